#include "qtService/app/service/FontManagementService.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/dialogs/AboutDialog.h"
#include "qtService/ui/dialogs/AsynchronousCommandWaitIndicatorDialog.h"
#include "qtService/ui/dialogs/FontActivationDialog.h"
#include "qtService/ui/dialogs/FontAdderDialog.h"
#include "qtService/ui/dialogs/FontArchiveImportDialog.h"
#include "qtService/ui/dialogs/FontExportProgressDialog.h"
#include "qtService/ui/dialogs/GroupSelectionDialog.h"
#include "qtService/ui/dialogs/SplashScreenDialog.h"
#include "qtService/ui/dialogs/TextInputDialog.h"
#include "qtService/ui/dialogs/UpdateCheckDialog.h"
#include "qtService/ui/filter/FilterButtonsWidget.h"
#include "qtService/ui/messages/FMSPlainTextMessage.h"
#include "qtService/ui/preferences/PreferencesWindow.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/Palette.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/accessiblewalk.h"
#include "tests/support/testregistry.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDate>
#include <QPalette>
#include <QScopeGuard>
#include <QStackedWidget>
#include <QToolButton>
#include <QtTest>

using kerval::testing::accessibilityFaults;

// Every window as a screen reader and the keyboard alone find it.
class AccessibilityTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_ids = m_library->addFonts(3);
        m_library->service()->addGroup(QStringLiteral("Mine"));
    }
    void cleanupTestCase() { m_library.reset(); }

    void everythingThatTakesTheFocusHasAName_data()
    {
        const QStringList names{QStringLiteral("about"),  QStringLiteral("wait"),       QStringLiteral("activation"),
                                QStringLiteral("adder"),  QStringLiteral("archives"),   QStringLiteral("export"),
                                QStringLiteral("groups"), QStringLiteral("splash"),     QStringLiteral("text"),
                                QStringLiteral("update"), QStringLiteral("plain text"), QStringLiteral("preferences"),
                                QStringLiteral("window")};
        QTest::addColumn<QString>("name");
        for (const QString& name : names)
            QTest::newRow(qPrintable(name)) << name;
    }

    void everythingThatTakesTheFocusHasAName()
    {
        QFETCH(QString, name);
        const std::unique_ptr<QWidget> window = create(name);
        QVERIFY(window);
        window->show();
        QCOMPARE(accessibilityFaults(window.get()).join(u'|'), QString());
        const QList<QStackedWidget*> stacks = window->findChildren<QStackedWidget*>();
        for (QStackedWidget* stack : stacks) {
            stack->show();
            for (int page = 0; page < stack->count(); ++page) {
                stack->setCurrentIndex(page);
                QCOMPARE(accessibilityFaults(window.get()).join(u'|'), QString());
            }
        }
    }

    void tabGoesRoundAndComesBack_data() { everythingThatTakesTheFocusHasAName_data(); }

    // Every control that can be reached by the keyboard is reached from every other, in one round.
    void tabGoesRoundAndComesBack()
    {
        QFETCH(QString, name);
        const std::unique_ptr<QWidget> window = create(name);
        window->show();
        QSet<QWidget*> expected;
        const QList<QWidget*> children = window->findChildren<QWidget*>();
        for (QWidget* child : children) {
            if (child->isVisible() && child->isEnabled() && child->window() == window.get() &&
                (child->focusPolicy() & Qt::TabFocus) && !child->focusProxy())
                expected.insert(child);
        }
        QSet<QWidget*> reached;
        QWidget* next = window->nextInFocusChain();
        for (int i = 0; next != window.get() && i < 1000; ++i, next = next->nextInFocusChain()) {
            if (expected.contains(next))
                reached.insert(next);
        }
        QCOMPARE(reached.size(), expected.size());
    }

    void linksAreLegibleOnDarkGround()
    {
        const QPalette usual = QApplication::palette();
        const auto restore = qScopeGuard([&usual] { QApplication::setPalette(usual); });
        ui::ensureLegibleLinks();
        QCOMPARE(QApplication::palette(), usual);
        QPalette dark(Qt::white, QColor(30, 30, 30), Qt::gray, Qt::black, Qt::darkGray, Qt::white, QColor(20, 20, 20));
        dark.setColor(QPalette::Link, Qt::blue);
        QApplication::setPalette(dark);
        ui::ensureLegibleLinks();
        const QPalette palette = QApplication::palette();
        QVERIFY(qGray(palette.color(QPalette::Link).rgb()) > 120);
        QCOMPARE(palette.color(QPalette::Base), QColor(20, 20, 20));
    }

private:
    std::unique_ptr<QWidget> create(const QString& name)
    {
        const auto& service = m_library->service();
        const QString title = QStringLiteral("Title");
        if (name == QLatin1String("about"))
            return std::make_unique<AboutDialog>(title, QStringLiteral("1"), QDate(2026, 1, 1), nullptr);
        if (name == QLatin1String("wait"))
            return std::make_unique<AsynchronousCommandWaitIndicatorDialog>(service->updateFileExistance(), title,
                                                                            QStringLiteral("Waiting..."), nullptr);
        if (name == QLatin1String("activation"))
            return std::make_unique<FontActivationDialog>(service, m_ids, kerval::systemfm::Inactive, title, nullptr);
        if (name == QLatin1String("adder")) {
            auto dialog = std::make_unique<FontAdderDialog>(service->fontAdder(), service->repository(), nullptr);
            dialog->setWindowTitle(title);
            return dialog;
        }
        if (name == QLatin1String("archives"))
            return std::make_unique<FontArchiveImportDialog>(service->importFontArchives({}), title, nullptr);
        if (name == QLatin1String("export"))
            return std::make_unique<FontExportProgressDialog>(service->exportAllFonts(QStringLiteral("/x")), title,
                                                              title, nullptr);
        if (name == QLatin1String("groups"))
            return std::make_unique<GroupSelectionDialog>(title, *service->userFontGroups(), nullptr);
        if (name == QLatin1String("splash"))
            return std::make_unique<SplashScreenDialog>();
        if (name == QLatin1String("text"))
            return std::make_unique<TextInputDialog>(title, title, title, title, nullptr, nullptr);
        if (name == QLatin1String("update"))
            return std::make_unique<UpdateCheckDialog>(service->createUpdateCheckCommand(), nullptr);
        if (name == QLatin1String("plain text")) {
            auto window = std::make_unique<FMSPlainTextMessage>();
            window->setRefreshButtonVisible(true);
            return window;
        }
        if (name == QLatin1String("preferences"))
            return std::make_unique<PreferencesWindow>();
        if (name == QLatin1String("window"))
            return std::make_unique<KrvFontManagerWindow>(service);
        return nullptr;
    }

    std::unique_ptr<WindowLibrary> m_library;
    QList<int> m_ids;
};

KERVAL_TEST(AccessibilityTest)
#include "AccessibilityTest.moc"
