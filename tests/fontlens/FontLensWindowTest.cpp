#include "fontlens/FontLensDialog.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/testregistry.h"

#include <QAction>
#include <QtTest>

// FontLens as the font manager window opens it.
class FontLensWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_ids = m_library->addFonts(fontCount);
    }

    void cleanupTestCase() { m_library.reset(); }

    void init()
    {
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->setLocalRecognitionService(QStringLiteral("127.0.0.1:1"));
        m_window->show();
        QTRY_COMPARE(list()->model()->rowCount(), fontCount);
    }

    void cleanup() { m_window.reset(); }

    void thereIsOneWindowAtATime()
    {
        for (const char* name : {"actionFontLens", "actionFontLensToolBar"})
            QVERIFY2(action(name)->isEnabled(), name);
        action("actionFontLens")->trigger();
        QPointer<FontLensDialog> dialog = lens();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->windowTitle(), QStringLiteral("Kerval Font Manager - FontLens"));
        QVERIFY(!dialog->isModal());
        action("actionFontLensToolBar")->trigger();
        QCOMPARE(m_window->findChildren<FontLensDialog*>().size(), 1);
        dialog->close();
        QTRY_VERIFY(dialog.isNull());
        action("actionFontLensToolBar")->trigger();
        QVERIFY(lens() && lens()->isVisible());
    }

    void aResultIsShownInTheListWhateverItShows()
    {
        action("actionFontLens")->trigger();
        emit lens()->showFontRequested(m_ids.at(2));
        QTRY_COMPARE(list()->currentFontId(), m_ids.at(2));
        emit lens()->showFontRequested(m_ids.last());
        QTRY_COMPARE(list()->currentFontId(), m_ids.last());
        QTRY_VERIFY(isInView());

        sideBar()->selectGroup(SystemFontGroupList::ActiveFonts);
        QTRY_COMPARE(list()->model()->rowCount(), 0);
        emit lens()->showFontRequested(m_ids.at(1));
        QTRY_COMPARE(list()->currentFontId(), m_ids.at(1));
        QCOMPARE(sideBar()->selectedGroupId(), int(SystemFontGroupList::AllFonts));
        QCOMPARE(list()->selectedFontIds(), QList<int>{m_ids.at(1)});
        QTRY_VERIFY(isInView());
    }

    void aFontThatIsGoneIsTold()
    {
        action("actionFontLens")->trigger();
        ModalAnswers answers({ModalAnswers::press(QStringLiteral("OK"))});
        emit lens()->showFontRequested(987654);
        QCOMPARE(answers.given(), 1);
    }

private:
    // More than the list shows at once.
    static constexpr int fontCount = 60;

    bool isInView() const
    {
        const QRect row = list()->visualRect(list()->currentIndex().siblingAtColumn(fonts::FamilyNameColumn));
        return row.isValid() && list()->viewport()->rect().contains(row.center());
    }

    QAction* action(const char* name) const { return m_window->findChild<QAction*>(QLatin1String(name)); }
    KrvFontsView* list() const { return m_window->findChild<KrvFontsView*>(QStringLiteral("fontsView")); }
    SideBarWidget* sideBar() const { return m_window->findChild<SideBarWidget*>(QStringLiteral("sideBar")); }
    FontLensDialog* lens() const { return m_window->findChild<FontLensDialog*>(); }

    std::unique_ptr<WindowLibrary> m_library;
    QList<int> m_ids;
    std::unique_ptr<KrvFontManagerWindow> m_window;
};

KERVAL_TEST(FontLensWindowTest)

#include "FontLensWindowTest.moc"
