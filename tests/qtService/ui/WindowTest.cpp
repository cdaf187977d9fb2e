#include "qtService/app/core/KrvUiSettings.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/fonts/ActiveFontSwitchWidget.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/search/KrvFontsModelSearchBox.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/testregistry.h"

#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QSplitter>
#include <QtTest>

// The window as a user drives it, over a real service; what a step does is looked for in the library.
class WindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_ids = m_library->addFonts(5);
        openWindow();
    }

    void cleanup()
    {
        m_window.reset();
        m_library.reset();
    }

    void actionsFollowTheCurrentFont()
    {
        m_view->selectionModel()->clear();
        QVERIFY(!action("actionHide")->isEnabled());
        QVERIFY(!action("actionRenameGroup")->isEnabled());
        QVERIFY(action("actionNewGroup")->isEnabled());
        QVERIFY(action("actionExportAllFonts")->isEnabled());
        QVERIFY(!action("actionResetFilters")->isEnabled());
        selectFirst(1);
        for (const char* name : {"actionHide", "actionCopyText", "actionSimilarity", "actionSimilarityToolBar",
                                 "actionActivatePermanently", "actionAddToGroups", "actionSampleSheet"})
            QVERIFY2(action(name)->isEnabled(), name);
        QVERIFY(!action("actionRemoveFromCurrentGroup")->isEnabled());
        // Current but no longer selected: only what needs no selection is left.
        m_view->selectionModel()->clearSelection();
        for (const char* name : {"actionHide", "actionDeactivateToolBar", "actionRemoveFromLibrary", "actionListing"})
            QVERIFY2(!action(name)->isEnabled(), name);
        QVERIFY(action("actionSimilarity")->isEnabled());
        action("actionCopyText")->trigger();
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Family 1"));
    }

    void groupsAreMadeFilledRenamedAndDeleted()
    {
        selectFirst(2);
        {
            ModalAnswers answers({ModalAnswers::typeAndAccept(QStringLiteral("Favourites"))});
            action("actionNewGroupWithFonts")->trigger();
            QCOMPARE(answers.given(), 1);
        }
        QTRY_COMPARE(groups()->groupCount(), 1);
        const int id = groups()->groupIdList().first();
        QTRY_COMPARE(groups()->group(id)->fontCount(), 2);

        sideBar()->selectGroup(id);
        QTRY_COMPARE(model()->rowCount(), 2);
        selectFirst(1);
        action("actionRemoveFromCurrentGroup")->trigger();
        QTRY_COMPARE(model()->rowCount(), 1);
        {
            ModalAnswers answers({ModalAnswers::typeAndAccept(QStringLiteral("Best")),
                                  ModalAnswers::typeAndAccept(QStringLiteral("Copy of it"))});
            action("actionRenameGroup")->trigger();
            action("actionDuplicateGroup")->trigger();
            QCOMPARE(answers.given(), 2);
        }
        QTRY_COMPARE(groups()->group(id)->name(), QStringLiteral("Best"));
        QTRY_COMPARE(title(), QStringLiteral("Best"));
        QTRY_COMPARE(groups()->groupCount(), 2);
        {
            ModalAnswers answers(
                {ModalAnswers::press(QStringLiteral("No")), ModalAnswers::press(QStringLiteral("Yes"))});
            action("actionDeleteGroup")->trigger();
            QCOMPARE(groups()->groupCount(), 2);
            action("actionDeleteGroup")->trigger();
        }
        QTRY_COMPARE(groups()->groupCount(), 1);
        QCOMPARE(sideBar()->selectedGroupId(), int(SystemFontGroupList::AllFonts));
        QTRY_COMPARE(model()->rowCount(), 5);
    }

    void groupNamesNeedAFirstCharacter()
    {
        QString typed;
        bool okForNothing = true;
        ModalAnswers answers({[&](QDialog* dialog) {
            auto* input = dialog->findChild<QLineEdit*>(QStringLiteral("leInput"));
            input->selectAll();
            QTest::keyClicks(input, QStringLiteral(" x y"));
            typed = input->text();
            input->clear();
            okForNothing = dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
            dialog->reject();
        }});
        action("actionNewGroup")->trigger();
        QCOMPARE(answers.given(), 1);
        QCOMPARE(groups()->groupCount(), 0);
        QCOMPARE(typed, QStringLiteral("x y"));
        QVERIFY(!okForNothing);
    }

    void namesInQuestionsAreNoMarkup()
    {
        const int id = m_library->service()->addGroup(QStringLiteral("<b>Bold</b>"));
        sideBar()->selectGroup(id);
        Qt::TextFormat format = Qt::RichText;
        ModalAnswers answers({[&](QDialog* dialog) {
            format = Qt::TextFormat(dialog->property("textFormat").toInt());
            dialog->reject();
        }});
        action("actionDeleteGroup")->trigger();
        QCOMPARE(answers.given(), 1);
        QCOMPARE(format, Qt::PlainText);
        QCOMPARE(groups()->groupCount(), 1);
    }

    void backAndForwardLeadThroughResultsAndGroups()
    {
        auto* back = m_window->findChild<QPushButton*>(QStringLiteral("btnBack"));
        auto* forward = m_window->findChild<QPushButton*>(QStringLiteral("btnForward"));
        sideBar()->selectGroup(SystemFontGroupList::InactiveFonts);
        QTRY_COMPARE(model()->rowCount(), 5);
        QVERIFY(!back->isEnabled());
        selectFirst(1);
        const int left = m_view->currentFontId();
        action("actionSimilarity")->trigger();
        QCOMPARE(title(), QStringLiteral("Similar fonts to Family 1 Book"));
        QVERIFY(!m_view->header()->isSortIndicatorShown());
        action("actionSmartChoiceMix")->trigger();
        sideBar()->selectGroup(SystemFontGroupList::AllFonts);
        QVERIFY(m_view->header()->isSortIndicatorShown());
        back->setFocus();
        for (const char* expected : {"Smart Choice Mix", "Similar fonts to Family 1 Book", "Inactive Fonts"}) {
            QVERIFY(back->isEnabled());
            QTest::mouseClick(back, Qt::LeftButton);
            QCOMPARE(title(), QLatin1String(expected));
        }
        QVERIFY(!back->isEnabled());
        QTRY_COMPARE(m_view->currentFontId(), left);
        QVERIFY(forward->hasFocus());
        QCOMPARE(sideBar()->selectedGroupId(), int(SystemFontGroupList::InactiveFonts));
        QTest::mouseClick(forward, Qt::LeftButton);
        QCOMPARE(title(), QStringLiteral("Similar fonts to Family 1 Book"));
        QCOMPARE(sideBar()->selectedGroupId(), 0);
    }

    void fontsJoinTickedGroups()
    {
        m_library->service()->addGroup(QStringLiteral("One"));
        const int two = m_library->service()->addGroup(QStringLiteral("Two"));
        QTRY_COMPARE(groups()->groupCount(), 2);
        selectFirst(3);
        ModalAnswers answers({[](QDialog* dialog) {
            auto* list = dialog->findChild<QListWidget*>();
            QVERIFY(!dialog->findChild<QPushButton*>()->isEnabled());
            list->item(1)->setCheckState(Qt::Checked);
            QTest::mouseClick(dialog->findChild<QPushButton*>(), Qt::LeftButton);
        }});
        action("actionAddToGroups")->trigger();
        QTRY_COMPARE(groups()->group(two)->fontCount(), 3);
    }

    void hiddenFontsLeaveTheList()
    {
        selectFirst(2);
        action("actionHide")->trigger();
        QTRY_COMPARE(model()->rowCount(), 3);
        QVERIFY(m_library->font(m_ids.at(0))->isHidden());
        sideBar()->selectGroup(SystemFontGroupList::HiddenFonts);
        QTRY_COMPARE(model()->rowCount(), 2);
        selectFirst(1);
        QCOMPARE(action("actionHide")->text(), QStringLiteral("Unhide"));
        action("actionHide")->trigger();
        QTRY_COMPARE(model()->rowCount(), 1);
    }

    void webFontsAreMarkedAndUnmarked()
    {
        selectFirst(1);
        {
            ModalAnswers answers({ModalAnswers::typeAndAccept(QStringLiteral("my shop"))});
            action("actionMarkAsWebFont")->trigger();
        }
        QTRY_COMPARE(m_library->font(m_ids.at(0))->onlineSource(), QStringLiteral("my shop"));
        QCOMPARE(action("actionMarkAsWebFont")->text(), QStringLiteral("Unmark Web Font"));
        action("actionMarkAsWebFont")->trigger();
        QTRY_VERIFY(m_library->font(m_ids.at(0))->onlineSource().isEmpty());
    }

    void removedFontsAreGoneAndANeighbourIsCurrent()
    {
        selectFirst(2);
        ModalAnswers answers({ModalAnswers::press(QStringLiteral("Yes"))});
        action("actionRemoveFromLibrary")->trigger();
        QTRY_COMPARE(model()->rowCount(), 3);
        QCOMPARE(m_library->service()->repository()->fontCount(), 3);
        QVERIFY(m_view->currentIndex().isValid());
    }

    void fontsAreActivatedForOtherPrograms()
    {
        selectFirst(1);
        QCOMPARE(m_library->font(m_ids.at(0))->activityType(), 0);
        const auto close = ModalAnswers::pressWhenShown(QStringLiteral("btnClose"));
        ModalAnswers answers({close, close});
        action("actionActivateTemporarily")->trigger();
        QTRY_COMPARE(m_library->font(m_ids.at(0))->activityType(), 1);
        sideBar()->selectGroup(SystemFontGroupList::ActiveFonts);
        QTRY_COMPARE(model()->rowCount(), 1);
        selectFirst(1);
        action("actionDeactivate")->trigger();
        QTRY_COMPARE(m_library->font(m_ids.at(0))->activityType(), 0);
        QTRY_COMPARE(model()->rowCount(), 0);
    }

    void oneFontIsSwitchedByItsButton()
    {
        ActiveFontSwitchWidget widget(m_library->service());
        widget.show();
        auto* button = widget.findChild<QPushButton*>(QStringLiteral("btnActivate"));
        QVERIFY(!button->isEnabled());
        widget.setFont(m_library->font(m_ids.at(2)));
        QTest::mouseClick(button, Qt::LeftButton);
        auto* result = widget.findChild<QLabel*>(QStringLiteral("lblResult"));
        QTRY_VERIFY(result->isVisible());
        QCOMPARE(result->text(), QStringLiteral("Activated"));
        QCOMPARE(m_library->font(m_ids.at(2))->activityType(), 2);
        widget.setFont(m_library->font(m_ids.at(2)));
        QCOMPARE(button->text(), QStringLiteral("Deactivate"));
        QTest::mouseClick(button, Qt::LeftButton);
        QTRY_COMPARE(m_library->font(m_ids.at(2))->activityType(), 0);
        QTRY_COMPARE(result->text(), QStringLiteral("Deactivated"));
    }

    void manyFontsAreConfirmedFirst()
    {
        m_library->addFonts(49);
        QTRY_COMPARE(model()->rowCount(), 54);
        selectFirst(1);
        m_view->selectAll();
        QString question;
        ModalAnswers answers({[&](QDialog* dialog) {
            question = dialog->property("text").toString();
            dialog->reject();
        }});
        action("actionActivatePermanently")->trigger();
        QCOMPARE(answers.given(), 1);
        QVERIFY2(question.contains(QStringLiteral("activate 54 fonts")), qPrintable(question));
        QCOMPARE(m_library->font(m_ids.at(0))->activityType(), 0);
    }

    void searchingNarrowsAndResetWidens()
    {
        QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
        auto* search = m_window->findChild<KrvFontsModelSearchBox*>()->findChild<QLineEdit*>();
        QTest::keyClicks(search, QStringLiteral("family 3"));
        QTest::keyClick(search, Qt::Key_Return);
        QTRY_COMPARE(model()->rowCount(), 1);
        QVERIFY(action("actionResetFilters")->isEnabled());
        auto* reset = m_window->findChild<QPushButton*>(QStringLiteral("btnResetFilters"));
        QVERIFY(reset->isVisible());
        const auto* count = m_window->findChild<QLabel*>(QStringLiteral("lblCount"));
        QCOMPARE(count->text(), QStringLiteral("1 of 5 fonts"));
        QTest::mouseClick(reset, Qt::LeftButton);
        QTRY_COMPARE(model()->rowCount(), 5);
        QCOMPARE(count->text(), QStringLiteral("5 fonts"));
        m_view->setFocus();
        QTest::keyClick(m_view, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(count->text(), QStringLiteral("5 fonts, 5 selected"));
        QTest::keyClick(m_view, Qt::Key_End);
        QCOMPARE(count->text(), QStringLiteral("5 fonts"));
        QVERIFY(search->text().isEmpty());
    }

    void filtersAndPlacesSurviveARestart()
    {
        auto* filters = m_window->findChild<QPushButton*>(QStringLiteral("btnFitlers"));
        QTest::mouseClick(filters, Qt::LeftButton);
        auto* openType = m_window->findChild<QCheckBox*>(QStringLiteral("openTypeCheckBox"));
        auto* trueType = m_window->findChild<QCheckBox*>(QStringLiteral("trueTypeCheckBox"));
        QVERIFY(openType->isVisible());
        trueType->setChecked(false);
        QTRY_COMPARE(model()->rowCount(), 0);
        const auto tools = [this] { return m_window->findChild<QWidget*>(QStringLiteral("filterWidgetsStack")); };
        auto* splitter = m_window->findChild<QSplitter*>(QStringLiteral("spltrFontListFilters"));
        m_window->resize(1221, 703);
        auto* detailsSplitter = m_window->findChild<QSplitter*>(QStringLiteral("spltrFontListFontDetails"));
        QTest::mouseClick(filters, Qt::LeftButton);
        detailsSplitter->setSizes({detailsSplitter->height() - 261, 261});
        const int detailsHeight = m_window->findChild<QWidget*>(QStringLiteral("detailsWidget"))->height();
        QVERIFY(detailsHeight > 240);
        QTest::mouseClick(filters, Qt::LeftButton);
        action("actionShowFontDetails")->trigger();
        QTRY_VERIFY(splitter->height() > 400);
        splitter->setSizes({splitter->height() - 201, 201});
        const int height = tools()->height();
        QVERIFY(height > 180);
        QTest::mouseClick(filters, Qt::LeftButton);
        QVERIFY(tools()->isHidden());
        m_window.reset();
        QCOMPARE(KrvUiSettings::instance()->value(KrvUiSettings::SidMainWindowGeometry).toRect().size(),
                 QSize(1221, 703));

        openWindow(0);
        filters = m_window->findChild<QPushButton*>(QStringLiteral("btnFitlers"));
        QTest::mouseClick(filters, Qt::LeftButton);
        QTRY_COMPARE(tools()->height(), height);
        QTest::mouseClick(filters, Qt::LeftButton);
        action("actionShowFontDetails")->trigger();
        QTRY_COMPARE(m_window->findChild<QWidget*>(QStringLiteral("detailsWidget"))->height(), detailsHeight);
        QTest::mouseClick(filters, Qt::LeftButton);
        QVERIFY(m_window->findChild<QCheckBox*>(QStringLiteral("openTypeCheckBox"))->isVisible());
        QVERIFY(!m_window->findChild<QCheckBox*>(QStringLiteral("trueTypeCheckBox"))->isChecked());
        action("actionResetFilters")->trigger();
        QTRY_COMPARE(model()->rowCount(), 5);
    }

    void theWindowOpensWhereItCanBeSeen()
    {
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        for (const QRect& noted : {QRect(9000, -9000, 700, 500), QRect(available.topLeft(), QSize(700, 500))}) {
            m_window.reset();
            KrvUiSettings::instance()->setValue(KrvUiSettings::SidMainWindowGeometry, noted);
            openWindow();
            QVERIFY(available.contains(m_window->geometry().topLeft()));
            // The title bar has a place as well, which the geometry does not count.
            QVERIFY(m_window->geometry().top() > available.top());
        }
    }

    void theSearchIsInSightOnANarrowScreen()
    {
        // No screen of the tests is wide enough for captions of this size.
        const QFont usual = QApplication::font();
        const auto restore = qScopeGuard([&usual] { QApplication::setFont(usual); });
        QFont large = usual;
        large.setPointSize(3 * large.pointSize());
        QApplication::setFont(large);
        m_window.reset();
        openWindow();
        QVERIFY(m_window->findChild<KrvFontsModelSearchBox*>()->isVisible());
    }

    void aLongNameDoesNotWidenTheWindow()
    {
        const int group = m_library->service()->addGroup(QString(200, QLatin1Char('W')));
        const int before = m_window->minimumSizeHint().width();
        sideBar()->selectGroup(group);
        QTRY_COMPARE(title().size(), 200);
        QCoreApplication::processEvents();
        QCOMPARE(m_window->minimumSizeHint().width(), before);
    }

    void aFoundryThatIsGoneIsStillNamedWhileItFilters()
    {
        m_window.reset();
        FontFiltersState state;
        state.setFoundry(QStringLiteral("Gone"));
        KrvUiSettings::instance()->setValue(KrvUiSettings::SidFilteringCriteria, QVariant::fromValue(state));
        openWindow(0);
        QCOMPARE(m_window->findChild<QComboBox*>(QStringLiteral("foundryComboBox"))->currentText(),
                 QStringLiteral("Gone"));
        action("actionResetFilters")->trigger();
        QTRY_COMPARE(model()->rowCount(), 5);
    }

    void closingOnlyHides()
    {
        m_window->close();
        QVERIFY(!m_window->isVisible());
        m_window->show();
        QVERIFY(m_window->isVisible());
        QCOMPARE(model()->rowCount(), 5);
    }

private:
    void openWindow(int rows = 5)
    {
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->show();
        m_view = m_window->findChild<KrvFontsView*>(QStringLiteral("fontsView"));
        m_view->sortByColumn(fonts::FamilyNameColumn, Qt::AscendingOrder);
        QTRY_COMPARE(model()->rowCount(), rows);
    }

    KrvFontsViewModel* model() const { return static_cast<KrvFontsViewModel*>(m_view->model()); }
    SideBarWidget* sideBar() const { return m_window->findChild<SideBarWidget*>(QStringLiteral("sideBar")); }
    QSharedPointer<UserFontGroupList> groups() const { return m_library->service()->userFontGroups(); }
    QString title() const { return m_window->findChild<QLabel*>(QStringLiteral("lblTitle"))->text(); }
    QAction* action(const char* name) const { return m_window->findChild<QAction*>(QLatin1String(name)); }

    // Selects the first rows as a user does; the first is the current one.
    void selectFirst(int count) const
    {
        const auto place = [this](int row) {
            return m_view->visualRect(model()->index(row, fonts::FamilyNameColumn)).center();
        };
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, place(0));
        if (count > 1)
            QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::ShiftModifier, place(count - 1));
    }

    std::unique_ptr<WindowLibrary> m_library;
    std::unique_ptr<KrvFontManagerWindow> m_window;
    KrvFontsView* m_view = nullptr;
    QList<int> m_ids;
};

KERVAL_TEST(WindowTest)
#include "WindowTest.moc"
