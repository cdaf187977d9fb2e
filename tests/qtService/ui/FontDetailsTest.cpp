#include "fontfile/KrvFontPainter.h"
#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "tests/fontfile/sfntbuilder.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/qtService/ui/modaldialogs.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QtTest>

using kerval::testing::SfntBuilder;

namespace {

constexpr int fontCount = 10;

QByteArray boxesFont(uint first, uint last, int height)
{
    SfntBuilder builder;
    if (first < 0x80)
        builder.mapCharacter(' ', builder.addGlyph(QByteArray()));
    for (uint code = first; code <= last; ++code)
        builder.mapCharacter(code, builder.addGlyph(SfntBuilder::boxGlyph(50, 0, 550, height)));
    return builder.build();
}

} // namespace

// The details pane of the real window: what each tab shows of the current font, and when.
class FontDetailsTest : public QObject
{
    Q_OBJECT

public slots:
    void rememberUrl(const QUrl& url) { m_opened.append(url); }

private slots:
    void init()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_ids.clear();
        for (int i = 1; i <= fontCount; ++i) {
            const QString file = m_library->path(QStringLiteral("boxes%1.ttf").arg(i));
            kerval::testing::writeFile(file, boxesFont('A', 'z', 300 + 50 * i));
            m_ids.append(m_library->addFont(file, QStringLiteral("Boxes %1").arg(i, 2, 10, QLatin1Char('0')),
                                            QStringLiteral("Boxes%1").arg(i)));
        }
        const QString cyrillic = m_library->path(QStringLiteral("cyrillic.ttf"));
        kerval::testing::writeFile(cyrillic, boxesFont(0x391, 0x44F, 700));
        m_ids.append(m_library->addFont(cyrillic, QStringLiteral("Cyrillic"), QStringLiteral("Cyrillic")));
        m_ids.append(m_library->addFont(m_library->path(QStringLiteral("gone.ttf")), QStringLiteral("Gone"),
                                        QStringLiteral("Gone")));
        openWindow();
    }

    void cleanup()
    {
        m_window.reset();
        m_library.reset();
    }

    void waterfallIsDrawnOnceAfterMovingThroughFonts()
    {
        showTab(1);
        QList<int> drawn;
        auto* rows = waterfall();
        connect(rows->model(), &QAbstractItemModel::dataChanged, this,
                [&drawn](const QModelIndex& index, const QModelIndex&, const QVector<int>& roles) {
                    if (roles.contains(Qt::DecorationRole))
                        drawn.append(index.row());
                });
        select(0);
        for (int i = 1; i < fontCount; ++i)
            QTest::keyClick(m_view, Qt::Key_Down);
        QVERIFY(drawn.isEmpty());
        QTRY_VERIFY(!drawn.isEmpty());
        QCOMPARE(drawn.count(16), 1);
        QCOMPARE(drawn.size(), rows->rowCount());
        QCOMPARE(rows->verticalScrollBar()->value(), 0); // it begins at its smallest size

        PointSizePreviewRequest request;
        request.dpi = 72;
        request.pointSize = 80;
        request.text = text()->currentText();
        QImage expected;
        QVERIFY(KrvFontPainter::renderPreview(font(fontCount - 1)->fileName(), request, &expected, 0, nullptr,
                                              Qt::AlignLeft, false, 0));
        const auto picture = [rows](int row) { return rows->item(row, 0)->data(Qt::DecorationRole).value<QImage>(); };
        QCOMPARE(picture(16), expected);
        QCOMPARE(rows->verticalHeaderItem(16)->text(), QStringLiteral("80"));
        QCOMPARE(picture(12).height(), expected.height() / 2);
        QVERIFY(rows->columnWidth(0) >= expected.width());
    }

    void waterfallFollowsTheTextAndTheFontThatIsGone()
    {
        showTab(1);
        select(3);
        auto* rows = waterfall();
        const auto width = [rows] { return rows->item(16, 0)->data(Qt::DecorationRole).value<QImage>().width(); };
        QTRY_VERIFY(width() > 0);
        text()->lineEdit()->selectAll();
        QTest::keyClicks(text()->lineEdit(), QStringLiteral("AB"));
        const int two = width();
        QTest::keyClicks(text()->lineEdit(), QStringLiteral("AB"));
        QVERIFY2(width() > 1.8 * two && width() < 2.3 * two, qPrintable(QString::number(width())));
        // Who does not see the pictures is told of them.
        QTest::keyClicks(text()->lineEdit(), QStringLiteral(" %2"));
        auto* table = QAccessible::queryAccessibleInterface(rows)->tableInterface();
        QCOMPARE(table->cellAt(16, 0)->text(QAccessible::Name), QStringLiteral("ABAB %2 in 80 points"));
        select(fontCount + 1);
        QTRY_COMPARE(width(), 0);
        QCOMPARE(rows->rowCount(), 17);
    }

    void tableShowsTheCurrentFontAtOnce()
    {
        select(0);
        for (int i = 1; i < 5; ++i)
            QTest::keyClick(m_view, Qt::Key_Down);
        showTab(2);
        QCOMPARE(value("Font Name"), QStringLiteral("Boxes 05"));
        QCOMPARE(value("Bold"), QStringLiteral("no"));
        QCOMPARE(value("Active"), QStringLiteral("Inactive"));
        QTest::keyClick(m_view, Qt::Key_Down);
        QCOMPARE(value("Font Name"), QStringLiteral("Boxes 06"));
        QCOMPARE(table()->rowCount(), 24);
    }

    void tableFollowsGroupsAndActivation()
    {
        select(0);
        showTab(2);
        const int second = m_library->service()->addGroup(QStringLiteral("B side"));
        const int first = m_library->service()->addGroup(QStringLiteral("A side"));
        const auto adding = m_library->service()->addFontsToGroups({second, first}, {m_ids.first()});
        adding->start();
        QTRY_VERIFY(value("User groups").contains(QStringLiteral("A side")));
        QTRY_COMPARE(value("User groups").split(QStringLiteral(", ")).size(), 2);
        m_library->service()->renameGroup(second, QStringLiteral("Covers"));
        QTRY_VERIFY(value("User groups").contains(QStringLiteral("Covers")));
        m_library->service()->removeGroup(first);
        QTRY_COMPARE(value("User groups"), QStringLiteral("Covers"));

        ModalAnswers answers({ModalAnswers::pressWhenShown(QStringLiteral("btnClose"))});
        action("actionActivatePermanently")->trigger();
        QTRY_COMPARE(value("Active"), QStringLiteral("Permanently active"));
    }

    void theFontIsSwitchedBesideTheTabs()
    {
        select(0);
        showTab(2);
        auto* button = child<QPushButton>("btnActivate");
        auto* result = child<QLabel>("lblResult");
        QVERIFY(button->isVisible() && button->isEnabled());
        QCOMPARE(button->text(), QStringLiteral("Activate"));
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        QTRY_COMPARE(font(0)->activityType(), 2);
        QTRY_VERIFY(result->isVisible());
        QCOMPARE(result->text(), QStringLiteral("Activated"));
        QTRY_COMPARE(value("Active"), QStringLiteral("Permanently active"));
        // The button comes back, to where the keyboard was.
        QTRY_VERIFY_WITH_TIMEOUT(button->isVisible(), 10000);
        QCOMPARE(button->text(), QStringLiteral("Deactivate"));
        QVERIFY(button->hasFocus());
        // What others do shows as well.
        m_library->service()->setFontActivityType({m_ids.first()}, kerval::systemfm::Inactive)->start();
        QTRY_COMPARE(button->text(), QStringLiteral("Activate"));
        select(1);
        QCOMPARE(button->text(), QStringLiteral("Activate"));
    }

    void linksOpenTheWebOnlyAndTextsAreCopied()
    {
        const StaticFontPtr shown = font(0);
        shown->setVendorUrl(QUrl(QStringLiteral("https://example.org/a?b=1&c=\"2\"")));
        shown->setDesignerUrl(QUrl(QStringLiteral("file:///bin/true")));
        shown->setLicenseUrl(QUrl(QStringLiteral("javascript:alert(1)")));
        select(0);
        showTab(2);
        for (const char* scheme : {"https", "file", "javascript"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "rememberUrl");
        for (const char* row : {"Vendor URL", "Designer URL", "License URL"}) {
            auto* link = static_cast<QLabel*>(table()->cellWidget(rowOf(row), 0));
            link->setFocus();
            QTest::keyClick(link, Qt::Key_Tab); // onto the link
            emit link->linkActivated(
                link->text().section(QLatin1Char('"'), 1, 1).replace(QStringLiteral("&amp;"), QStringLiteral("&")));
        }
        for (const char* scheme : {"https", "file", "javascript"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
        QCOMPARE(m_opened.size(), 1);
        QCOMPARE(m_opened.first().host(), QStringLiteral("example.org"));
        // Where no program opens it, a message names it.
        emit static_cast<QLabel*>(table()->cellWidget(rowOf("Vendor URL"), 0))
            ->linkActivated(QStringLiteral("https://example.org/lost"));
        QMessageBox* message = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && qobject_cast<QMessageBox*>(widget))
                message = static_cast<QMessageBox*>(widget);
        }
        QVERIFY(message);
        QVERIFY2(message->text().contains(QStringLiteral("example.org/lost")), qPrintable(message->text()));
        QTest::keyClick(message, Qt::Key_Escape);

        table()->setCurrentCell(rowOf("Font Name"), 0);
        table()->setFocus();
        table()->selectionModel()->select(table()->model()->index(rowOf("Filename"), 0), QItemSelectionModel::Select);
        QTest::keyClick(table(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("Boxes 01\n") + shown->fileName());
    }

    void characterMapStartsAtABlockTheFontHas()
    {
        select(0);
        auto* ranges = child<QComboBox>("characterRangeComboBox");
        auto* map = child<QAbstractItemView>("characterMap");
        QTRY_COMPARE(ranges->currentText(), QStringLiteral("Basic Latin"));
        QCOMPARE(map->model()->rowCount(), 1 + 'z' - 'A' + 1);
        select(fontCount);
        QTRY_COMPARE(ranges->currentText(), QStringLiteral("Greek"));
        ranges->setCurrentIndex(1);
        QCOMPARE(ranges->currentText(), QStringLiteral("Cyrillic"));
        QCOMPARE(map->model()->rowCount(), 80);
        select(1);
        QTRY_COMPARE(ranges->currentText(), QStringLiteral("Basic Latin"));
        // The choice waits for the next font that has the range.
        select(fontCount);
        QTRY_COMPARE(ranges->currentText(), QStringLiteral("Cyrillic"));
        select(fontCount + 1);
        QTRY_COMPARE(ranges->count(), 0);
        QCOMPARE(map->model()->rowCount(), 0);
    }

    void settingsOfThePaneSurviveARestart()
    {
        auto* pane = child<QWidget>("detailsWidget");
        QVERIFY(pane->isVisible());
        QVERIFY(action("actionShowFontDetails")->isEnabled());
        action("actionShowFontDetails")->trigger();
        QVERIFY(!pane->isVisible());
        child<QComboBox>("fontSizeComboBox")->setCurrentIndex(0);
        m_window.reset();
        openWindow();
        QVERIFY(!child<QWidget>("detailsWidget")->isVisible());
        QCOMPARE(child<QComboBox>("fontSizeComboBox")->currentData().toInt(), 12);
        // Hidden, it keeps up with the list and shows it when it comes back.
        showTab(2);
        select(2);
        action("actionShowFontDetails")->trigger();
        QVERIFY(child<QWidget>("detailsWidget")->isVisible());
        QCOMPARE(value("Font Name"), QStringLiteral("Boxes 03"));
    }

private:
    void openWindow()
    {
        m_window = std::make_unique<KrvFontManagerWindow>(m_library->service());
        m_window->resize(1100, 900);
        m_window->show();
        m_view = m_window->findChild<KrvFontsView*>(QStringLiteral("fontsView"));
        m_view->sortByColumn(fonts::FamilyNameColumn, Qt::AscendingOrder);
        QTRY_COMPARE(m_view->model()->rowCount(), m_ids.size());
    }

    template <class Widget>
    Widget* child(const char* name) const
    {
        return m_window->findChild<Widget*>(QLatin1String(name));
    }
    QAction* action(const char* name) const { return child<QAction>(name); }
    QTableWidget* waterfall() const { return child<QTableWidget>("waterfallView"); }
    QTableWidget* table() const { return child<QTableWidget>("detailsView"); }
    QComboBox* text() const { return child<QComboBox>("previewTextComboBox"); }
    StaticFontPtr font(int row) const { return m_library->font(m_ids.at(row)); }

    void showTab(int tab) const { child<QTabWidget>("tabWidget")->setCurrentIndex(tab); }

    void select(int row) const
    {
        const QModelIndex index = m_view->model()->index(row, fonts::FamilyNameColumn);
        m_view->scrollTo(index);
        QTest::mouseClick(m_view->viewport(), Qt::LeftButton, Qt::NoModifier, m_view->visualRect(index).center());
    }

    int rowOf(const char* label) const
    {
        for (int row = 0; row < table()->rowCount(); ++row) {
            if (table()->verticalHeaderItem(row)->text() == QLatin1String(label))
                return row;
        }
        return -1;
    }
    QString value(const char* label) const { return table()->item(rowOf(label), 0)->text(); }

    std::unique_ptr<WindowLibrary> m_library;
    std::unique_ptr<KrvFontManagerWindow> m_window;
    KrvFontsView* m_view = nullptr;
    QList<int> m_ids;
    QList<QUrl> m_opened;
};

KERVAL_TEST(FontDetailsTest)
#include "FontDetailsTest.moc"
