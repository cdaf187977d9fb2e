#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/support/testregistry.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QToolBar>
#include <QtTest>

// Every entry of every menu and tool bar is chosen once, and has to show for it: a dialog, another list of fonts, an
// opened address, a request to the program. Nothing that can be chosen may do nothing.
class MenuWalkTest : public QObject
{
    Q_OBJECT

public slots:
    void rememberUrl(const QUrl&) { ++m_openedUrls; }

private slots:
    void initTestCase()
    {
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "rememberUrl");
    }
    void cleanupTestCase()
    {
        for (const char* scheme : {"file", "http", "https"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }

    void init()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_library->addFonts(3);
        m_group = m_library->service()->addGroup(QStringLiteral("Mine"));
        QTRY_COMPARE(m_library->service()->userFontGroups()->groupCount(), 1);
        openWindow();
        qApp->installEventFilter(this);
    }
    void cleanup()
    {
        qApp->removeEventFilter(this);
        m_window.reset();
        m_library.reset();
    }

    void everyEntryHasAnEffect()
    {
        const QStringList places = entries();
        QVERIFY2(places.size() > 60, qPrintable(places.join(u'\n')));
        QStringList dead;
        QStringList disabled;
        for (int i = 0; i < places.size(); ++i) {
            prepare();
            if (QTest::currentTestFailed())
                return;
            QAction* const action = allActions().value(i);
            QVERIFY2(action, qPrintable(places.at(i)));
            if (!action->isEnabled()) {
                disabled.append(action->objectName());
                continue;
            }
            const QString before = snapshot();
            m_shown.clear();
            action->trigger();
            const bool showed = QTest::qWaitFor([&] { return !m_shown.isEmpty() || snapshot() != before; }, 3000);
            if (!showed)
                dead.append(places.at(i));
        }
        QCOMPARE(dead.join(u'\n'), QString());
        disabled.removeDuplicates();
        // There is nothing to reset while nothing is filtered.
        disabled.removeAll(QStringLiteral("actionResetFilters"));
        QCOMPARE(disabled.join(u'\n'), QString());
    }

protected:
    // Whatever opens is noted and closed again, as by Escape.
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* widget = qobject_cast<QWidget*>(watched);
        if (event->type() == QEvent::Show && widget && widget->isWindow() && widget != m_window.get()) {
            m_shown.append(widget->objectName());
            QPointer<QWidget> shown(widget);
            QTimer::singleShot(0, this, [shown] {
                if (shown && shown->objectName() != QLatin1String("AsynchronousCommandWaitIndicatorDialog"))
                    shown->close();
            });
        }
        return QObject::eventFilter(watched, event);
    }

private:
    void openWindow()
    {
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->show();
        m_view = m_window->findChild<KrvFontsView*>(QStringLiteral("fontsView"));
        for (const auto signal : {&KrvFontManagerWindow::showPreferences, &KrvFontManagerWindow::checkForUpdates,
                                  &KrvFontManagerWindow::scanLogRequested})
            connect(m_window.get(), signal, this, [this] { ++m_requests; });
    }

    template <class Command>
    static void run(const Command& command)
    {
        command->start();
        command->waitForFinished();
    }

    // All fonts are in the user's group, which is selected, and the first of them is current.
    void prepare()
    {
        QTRY_VERIFY(!QApplication::activeModalWidget() && !QApplication::activePopupWidget());
        m_window->show();
        auto* sideBar = m_window->findChild<SideBarWidget*>(QStringLiteral("sideBar"));
        const auto& service = m_library->service();
        const QList<int> ids = service->repository()->fontIdList();
        run(service->setFontsHidden(ids, false));
        run(service->addFontsToGroups({m_group}, ids));
        sideBar->selectGroup(SystemFontGroupList::AllFonts);
        sideBar->selectGroup(m_group);
        const auto* model = static_cast<KrvFontsViewModel*>(m_view->model());
        QTRY_VERIFY(!model->isFiltering());
        QTRY_COMPARE(model->rowCount(), ids.size());
        m_view->setCurrentIndex(m_view->model()->index(0, fonts::FamilyNameColumn));
        QGuiApplication::clipboard()->clear();
        QCoreApplication::processEvents();
    }

    QString snapshot() const
    {
        QStringList state{QString::number(m_openedUrls), QString::number(m_requests),
                          m_window->isVisible() ? QStringLiteral("open") : QStringLiteral("closed"),
                          QGuiApplication::clipboard()->text()};
        const auto repository = m_library->service()->repository();
        const QList<StaticFontPtr> fonts = repository->fonts();
        for (const StaticFontPtr& font : fonts)
            state.append(QStringLiteral("%1 %2 %3").arg(font->id()).arg(font->activityType()).arg(font->isHidden()));
        state.append(QString::number(m_library->service()->userFontGroups()->group(m_group)->fontCount()));
        const QHeaderView* header = m_view->header();
        for (int column = 0; column < header->count(); ++column)
            state.append(header->isSectionHidden(column) ? QStringLiteral("-") : QStringLiteral("+"));
        const QList<QWidget*> widgets = m_window->findChildren<QWidget*>();
        for (const QWidget* widget : widgets) {
            if (!widget->isHidden() && !widget->objectName().isEmpty() && !qobject_cast<const QMenu*>(widget) &&
                !widget->objectName().startsWith(QLatin1String("qt_")))
                state.append(widget->objectName());
        }
        const auto* title = m_window->findChild<QWidget*>(QStringLiteral("fontListHeader"))->findChild<QLabel*>();
        state.append(title ? title->text() : QString());
        return state.join(u'|');
    }

    using Found = QList<QPair<QString, QAction*>>;

    static void collect(const QList<QAction*>& actions, const QString& path, Found* found)
    {
        for (QAction* action : actions) {
            const QString place = path + QLatin1Char('/') + action->text().remove(QLatin1Char('&'));
            if (action->menu())
                collect(action->menu()->actions(), place, found);
            else if (!action->isSeparator() && !action->text().isEmpty())
                found->append({place.mid(1), action});
        }
    }

    // Opens a context menu as the mouse does and reads what it offers.
    void collectContextMenu(const QString& name, const std::function<void()>& open, Found* found) const
    {
        qApp->removeEventFilter(const_cast<MenuWalkTest*>(this));
        QTimer::singleShot(0, qApp, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            collect(menu->actions(), QLatin1Char('/') + name, found);
            menu->close();
        });
        open();
        qApp->installEventFilter(const_cast<MenuWalkTest*>(this));
    }

    Found all() const
    {
        Found found;
        collect(m_window->menuBar()->actions(), QString(), &found);
        const QList<QToolBar*> bars = m_window->findChildren<QToolBar*>();
        for (const QToolBar* bar : bars)
            collect(bar->actions(), QStringLiteral("/tool bar"), &found);
        collectContextMenu(
            QStringLiteral("font menu"), [this] { emit m_view->customContextMenuRequested(QPoint(5, 5)); }, &found);
        auto* sideBar = m_window->findChild<SideBarWidget*>(QStringLiteral("sideBar"));
        for (const int group : {m_group, int(SystemFontGroupList::AllFonts)})
            collectContextMenu(
                QStringLiteral("group menu %1").arg(group > 0 ? 1 : 0),
                [=] { emit sideBar->contextMenuRequested(group, QPoint(5, 5)); }, &found);
        sideBar->selectGroup(m_group);
        return found;
    }

    QStringList entries() const
    {
        const_cast<MenuWalkTest*>(this)->prepare();
        QStringList places;
        for (const auto& [place, action] : all())
            places.append(place);
        return places;
    }
    QList<QAction*> allActions() const
    {
        QList<QAction*> actions;
        for (const auto& [place, action] : all())
            actions.append(action);
        const_cast<MenuWalkTest*>(this)->prepare();
        return actions;
    }

    std::unique_ptr<WindowLibrary> m_library;
    std::unique_ptr<KrvFontManagerWindow> m_window;
    KrvFontsView* m_view = nullptr;
    int m_group = 0;
    int m_openedUrls = 0;
    int m_requests = 0;
    QStringList m_shown;
};

KERVAL_TEST(MenuWalkTest)
#include "MenuWalkTest.moc"
