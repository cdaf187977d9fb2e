#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/management/FontAdder.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/messages/KrvMessage.h"
#include "qtService/ui/preferences/PreferencesWindow.h"
#include "qtService/ui/sidebar/SideBarModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/management/LibraryFixture.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/testregistry.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

// The preferences and the notices they switch, with what reaches the settings files.
class PreferencesTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        kerval::testing::clearSettings();
        m_folder = std::make_unique<QTemporaryDir>();
        for (const char* name : {"one", "two", "three"})
            QDir(m_folder->path()).mkdir(QLatin1String(name));
    }

    void scanPathsAreEditedAndKept()
    {
        FontAdder::setScanPaths({path("one")});
        PreferencesWindow window;
        window.show();
        auto* list = window.findChild<QListWidget*>(QStringLiteral("lw_paths"));
        QCOMPARE(list->count(), 1);
        QVERIFY(!button(window, "btn_edit")->isEnabled() && !button(window, "btn_remove")->isEnabled());
        ModalAnswers answers({chooseFolder(path("two")), chooseFolder(path("three")), reject()});
        click(window, "btn_add");
        QCOMPARE(list->item(1)->text(), path("two"));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier,
                          list->visualItemRect(list->item(0)).center());
        QVERIFY(button(window, "btn_edit")->isEnabled());
        click(window, "btn_edit");
        QCOMPARE(list->item(0)->text(), path("three"));
        click(window, "btn_add"); // cancelled
        QCOMPARE(list->count(), 2);
        QCOMPARE(answers.given(), 3);
        // Nothing is kept before OK.
        QCOMPARE(FontAdder::scanPaths(), QStringList(path("one")));
        press(window, QDialogButtonBox::Ok);
        QVERIFY(!window.isVisible());
        QCOMPARE(FontAdder::scanPaths(), QStringList({path("three"), path("two")}));

        window.show();
        list->setCurrentRow(1);
        QTest::keyClick(button(window, "btn_remove"), Qt::Key_Space);
        QCOMPARE(list->count(), 1);
        QTest::keyClick(&window, Qt::Key_Escape);
        QCOMPARE(FontAdder::scanPaths(), QStringList({path("three"), path("two")}));
        window.show();
        QCOMPARE(list->count(), 2);
    }

    void groupsAreSortedAsChosen()
    {
        WindowLibrary library;
        for (const char* name : {"Banana", "Apple", "Cherry"})
            library.service()->addGroup(QLatin1String(name));
        QTRY_COMPARE(library.service()->userFontGroups()->groupCount(), 3);
        KrvFontManagerWindow manager(library.service());
        manager.show();
        PreferencesWindow window;
        window.show();
        choose(window, "cmbGroupSortBy", QStringLiteral("Name"));
        choose(window, "cmbGroupSortOrder", QStringLiteral("Descending"));
        press(window, QDialogButtonBox::Cancel);
        const QStringList byCreation{QStringLiteral("Banana"), QStringLiteral("Apple"), QStringLiteral("Cherry")};
        QCOMPARE(userGroups(manager), byCreation);
        window.show();
        choose(window, "cmbGroupSortBy", QStringLiteral("Name"));
        choose(window, "cmbGroupSortOrder", QStringLiteral("Descending"));
        press(window, QDialogButtonBox::Ok);
        QCOMPARE(KrvUiSettings::instance()->value(KrvUiSettings::SidGroupSortBy).toInt(), 259);
        QCOMPARE(KrvUiSettings::instance()->value(KrvUiSettings::SidGroupSortOrder).toInt(), 1);
        QTRY_COMPARE(userGroups(manager),
                     QStringList({QStringLiteral("Cherry"), QStringLiteral("Banana"), QStringLiteral("Apple")}));
        KrvUiSettings::instance()->setValue(KrvUiSettings::SidGroupSortBy, 257);
        KrvUiSettings::instance()->setValue(KrvUiSettings::SidGroupSortOrder, 0);
    }

    void noticesAreSwitchedOffAndOnAgain()
    {
        KrvMessage* const messages = KrvMessage::instance();
        messages->showPredefined(KrvMessage::FontsProcessed, true, false);
        QMessageBox* box = openBox();
        QVERIFY(box);
        QVERIFY(!box->isModal());
        QCOMPARE(box->windowTitle(), QStringLiteral("Kerval 2.7.1"));
        auto* check = box->findChild<QCheckBox*>();
        QCOMPARE(check->text(), QStringLiteral("don't show anymore"));
        QTest::mouseClick(check, Qt::LeftButton, Qt::NoModifier, QPoint(8, check->height() / 2));
        QVERIFY(box->isVisible());
        QTest::keyClick(box, Qt::Key_Escape);
        QVERIFY(!openBox());
        QVERIFY(!KrvMessage::isShown(KrvMessage::FontsProcessed));
        messages->showPredefined(KrvMessage::FontsProcessed, true, false);
        QVERIFY(!openBox());

        PreferencesWindow window;
        window.show();
        auto* bar = window.findChild<QToolBar*>();
        auto* tab = qobject_cast<QToolButton*>(bar->widgetForAction(bar->actions().at(1)));
        // By keyboard alone.
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        for (int i = 0; i < 20 && window.focusWidget() != tab; ++i)
            QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        QCOMPARE(window.focusWidget(), tab);
        QTest::keyClick(tab, Qt::Key_Space);
        QCOMPARE(window.findChild<QStackedWidget*>()->currentIndex(), 1);
        auto* list = window.findChild<QListWidget*>(QStringLiteral("lw_messages"));
        QVERIFY(list->isVisible());
        QListWidgetItem* item = nullptr;
        for (int row = 0; row < list->count(); ++row) {
            const bool isIt = list->item(row)->text() == QLatin1String("Font(s) are now processed.");
            QCOMPARE(list->item(row)->checkState(), isIt ? Qt::Unchecked : Qt::Checked);
            if (isIt)
                item = list->item(row);
        }
        QVERIFY(item);
        list->setFocus();
        list->setCurrentItem(item);
        QTest::keyClick(list, Qt::Key_Space);
        QCOMPARE(item->checkState(), Qt::Checked);
        QVERIFY(!KrvMessage::isShown(KrvMessage::FontsProcessed));
        press(window, QDialogButtonBox::Ok);
        QVERIFY(KrvMessage::isShown(KrvMessage::FontsProcessed));
        const QSettings file(krv::userSettingsFolder() + QStringLiteral("messages.ini"), QSettings::IniFormat);
        QVERIFY(!file.contains(QStringLiteral("msg_0")));

        messages->showPredefined(KrvMessage::FontsProcessed, true, false);
        messages->showPredefined(KrvMessage::FontsProcessed, true, false); // not a second one
        box = openBox();
        QVERIFY(box);
        QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        QVERIFY(!openBox());
    }

    void aForcedNoticeIsShownAllTheSame()
    {
        KrvMessage::setShown(KrvMessage::FontsAlreadyProcessed, false);
        KrvMessage::instance()->showPredefined(KrvMessage::FontsAlreadyProcessed, false, true, QStringLiteral("Title"));
        QMessageBox* box = openBox();
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), QStringLiteral("Title"));
        QVERIFY(!box->checkBox());
        box->close();
        KrvMessage::instance()->warning(QStringLiteral("one\ntwo"));
        box = openBox();
        QVERIFY(box);
        QCOMPARE(box->text(), QStringLiteral("one<br />two"));
        box->close();
    }

private:
    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }

    static QPushButton* button(const QWidget& window, const char* name)
    {
        return window.findChild<QPushButton*>(QLatin1String(name));
    }
    static void click(const QWidget& window, const char* name)
    {
        QTest::mouseClick(button(window, name), Qt::LeftButton);
    }
    static void press(const QWidget& window, QDialogButtonBox::StandardButton which)
    {
        QTest::mouseClick(window.findChild<QDialogButtonBox*>()->button(which), Qt::LeftButton);
    }
    static void choose(const QWidget& window, const char* box, const QString& text)
    {
        auto* combo = window.findChild<QComboBox*>(QLatin1String(box));
        combo->setFocus();
        for (int i = 0; i < combo->count() && combo->currentText() != text; ++i)
            QTest::keyClick(combo, Qt::Key_Down);
        QCOMPARE(combo->currentText(), text);
    }
    static ModalAnswers::Answer chooseFolder(const QString& folder) { return ModalAnswers::typeAndAccept(folder); }
    static ModalAnswers::Answer reject()
    {
        return [](QDialog* dialog) { dialog->reject(); };
    }

    // The names of the user's groups from top to bottom.
    static QStringList userGroups(const QWidget& window)
    {
        const auto* view = window.findChild<SideBarWidget*>()->findChild<QTreeView*>();
        QStringList names;
        const std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
            for (int row = 0; row < view->model()->rowCount(parent); ++row) {
                const QModelIndex index = view->model()->index(row, 0, parent);
                if (index.data(SideBarModel::GroupIdRole).toInt() > 0)
                    names.append(index.data(SideBarModel::NameRole).toString());
                walk(index);
            }
        };
        walk(QModelIndex());
        return names;
    }

    static QMessageBox* openBox()
    {
        QMessageBox* found = nullptr;
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (QWidget* widget : widgets) {
            auto* box = qobject_cast<QMessageBox*>(widget);
            if (box && box->isVisible())
                found = box;
        }
        return found;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

KERVAL_TEST(PreferencesTest)
#include "PreferencesTest.moc"
