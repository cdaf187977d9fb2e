#include "qtService/management/FontGroup.h"
#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/fonts/FontColumn.h"
#include "qtService/ui/fonts/FontDrag.h"
#include "qtService/ui/fonts/KrvFontsView.h"
#include "qtService/ui/fonts/KrvFontsViewModel.h"
#include "qtService/ui/fonts/KrvFontsViewModelPrivate.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QSignalSpy>
#include <QtTest>

namespace {

const QString realFont = QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");

} // namespace

class FontsModelTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_library = std::make_unique<TestLibrary>();
        QList<StaticFontPtr> fonts;
        for (const char* name : {"beta", "Alpha 10", "alpha 2", "gamma"})
            fonts.append(makeFont(QLatin1String(name)));
        m_ids = m_library->addFonts(fonts);
        m_group = makeFontGroup<FontGroup>(m_library->repository, QStringLiteral("All"));
    }

    void cleanup()
    {
        m_group.clear();
        m_library.reset();
    }

    void rowsFollowTheGroup()
    {
        KrvFontsViewModelPrivate model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy filtering(&model, &KrvFontsViewModelPrivate::filteringStatusChanged);
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        QCOMPARE(filtering.count(), 2);
        QCOMPARE(model.columnCount(), 28);

        // A row that stays keeps its place in every list of rows somebody holds.
        const QPersistentModelIndex gamma = model.index(3, fonts::FamilyNameColumn);
        QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
        m_library->repository->removeFonts({m_library->repository->font(m_ids.at(1))});
        QTRY_COMPARE(model.rowCount(), 3);
        QCOMPARE(gamma.data().toString(), QStringLiteral("gamma"));
        QCOMPARE(gamma.row(), 2);
        m_library->addFonts({makeFont(QStringLiteral("delta")), makeFont(QStringLiteral("epsilon"))});
        QTRY_COMPARE(model.rowCount(), 5);
        QCOMPARE(gamma.row(), 2);
        QCOMPARE(reset.count(), 0);
    }

    void aBurstOfChangesCostsOneSearch()
    {
        KrvFontsViewModelPrivate model;
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        QSignalSpy filtering(&model, &KrvFontsViewModelPrivate::filteringStatusChanged);
        for (int i = 0; i < 20; ++i)
            m_library->addFonts({makeFont(QString::number(i))});
        QTRY_COMPARE(model.rowCount(), 24);
        QTRY_VERIFY(!model.isFiltering());
        QVERIFY2(filtering.count() <= 6, qPrintable(QString::number(filtering.count())));
    }

    void changedFontsRepaintOnlyTheirRows()
    {
        KrvFontsViewModelPrivate model;
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
        const StaticFontPtr font = m_library->repository->font(m_ids.at(2));
        font->setUserNote(QStringLiteral("nice"));
        QVERIFY(m_library->repository->updateFonts({font}, {QStringLiteral("userNote")}));
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(changed.first().at(0).toModelIndex().row(), 2);
        QCOMPARE(model.index(2, fonts::NoteColumn).data().toString(), QStringLiteral("nice"));
        QCOMPARE(model.index(2, fonts::ActivityImageColumn).data().toInt(), font->activityType());
    }

    void sortingKnowsNumbersAndCase()
    {
        KrvFontsViewModel model;
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.sort(fonts::FamilyNameColumn);
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        QCOMPARE(names(model), QStringLiteral("alpha 2,Alpha 10,beta,gamma"));
        model.sort(fonts::IdColumn, Qt::DescendingOrder);
        QCOMPARE(names(model), QStringLiteral("gamma,alpha 2,Alpha 10,beta"));

        // A renamed font moves to its new place while the list is shown.
        model.sort(fonts::FamilyNameColumn);
        const StaticFontPtr font = m_library->repository->font(m_ids.at(3));
        font->setFamilyName(QStringLiteral("aardvark"));
        m_library->repository->updateFonts({font}, {QStringLiteral("familyName")});
        QTRY_COMPARE(names(model), QStringLiteral("aardvark,alpha 2,Alpha 10,beta"));
    }

    void filtersNarrowTheRows()
    {
        FontFiltersState filters;
        KrvFontsViewModel model;
        model.sort(fonts::FamilyNameColumn);
        model.setFiltersState(&filters);
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        filters.setTextSearch(QStringLiteral("ALPHA"));
        QTRY_COMPARE(names(model), QStringLiteral("alpha 2,Alpha 10"));
        filters.setTextSearch(QStringLiteral("lpha 10"));
        QTRY_COMPARE(names(model), QStringLiteral("Alpha 10"));
        filters.clear();
        QTRY_COMPARE(model.rowCount(), 4);
        model.setFontGroup(FontGroupPtr());
        QCOMPARE(model.rowCount(), 0);
    }

    void draggedFontsCarryIdsAndFiles_data()
    {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("type");
        QTest::newRow("any group") << "All" << fonts::fontIdListMimeType();
        QTest::newRow("hidden fonts") << "Hidden Fonts" << fonts::hiddenFontIdListMimeType();
    }

    void draggedFontsCarryIdsAndFiles()
    {
        QFETCH(QString, group);
        QFETCH(QString, type);
        m_group->setName(group);
        KrvFontsViewModelPrivate model;
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        const std::unique_ptr<QMimeData> data(
            model.mimeData({model.index(1, 3), model.index(1, 4), model.index(2, 3)}));
        QVERIFY(data->hasFormat(type));
        QCOMPARE(fonts::fontIdsOf(data.get()), (QList<int>{m_ids.at(1), m_ids.at(2)}));
        QCOMPARE(data->urls().size(), 2);
        const std::unique_ptr<QMimeData> nothing(model.mimeData({}));
        QVERIFY(fonts::fontIdsOf(nothing.get()).isEmpty());
    }

    void previewsComeByThemselves()
    {
        const StaticFontPtr font = TestLibrary::makeFont(realFont, QStringLiteral("dejavu"));
        font->setFamilyName(QStringLiteral("DejaVu Sans"));
        m_library->addFonts({font});
        KrvFontsViewModel model;
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 5);
        const QPersistentModelIndex index = model.indexOfFont(font->id(), fonts::PreviewColumn);
        QVERIFY(index.data().value<QImage>().isNull());
        QTRY_VERIFY(!index.data().value<QImage>().isNull());
        const QSize small = index.data().value<QImage>().size();
        model.setPreviewSize(60);
        QTRY_VERIFY(index.data().value<QImage>().height() > small.height());
        // A row is one line high, whatever the user wrote.
        const auto preview = [&index] { return index.data().value<QImage>(); };
        model.setPreviewText(QStringLiteral("Hg Hg"));
        QTRY_VERIFY(!preview().isNull());
        const QImage line = preview();
        model.setPreviewText(QStringLiteral("Hg\nHg\n"));
        QTRY_COMPARE(preview(), line);
        // A font whose file is gone shows a message instead.
        QTRY_VERIFY(!model.indexOfFont(m_ids.first(), fonts::PreviewColumn).data().value<QImage>().isNull());
    }

    void theViewKeepsItsColumns()
    {
        {
            KrvFontsViewModel model;
            KrvFontsView view;
            view.setModel(&model);
            view.setColumnVisible(fonts::FoundryColumn, false);
            view.columnsMenu()->actions().at(fonts::VersionColumn)->trigger();
            view.header()->resizeSection(fonts::StyleNameColumn, 177);
            view.header()->moveSection(view.header()->visualIndex(fonts::StyleNameColumn), 0);
            view.header()->setSortIndicator(fonts::StyleNameColumn, Qt::DescendingOrder);
            view.setPreviewSize(50);
        }
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        QVERIFY(view.isColumnHidden(fonts::FoundryColumn));
        QVERIFY(!view.isColumnHidden(fonts::VersionColumn));
        QVERIFY(!view.isColumnHidden(fonts::PreviewColumn));
        QCOMPARE(view.header()->sectionSize(fonts::StyleNameColumn), 177);
        QCOMPARE(view.header()->visualIndex(fonts::StyleNameColumn), 0);
        QCOMPARE(view.header()->sortIndicatorSection(), int(fonts::StyleNameColumn));
        QCOMPARE(view.header()->sortIndicatorOrder(), Qt::DescendingOrder);
        QCOMPARE(model.previewSize(), 50);
    }

    void thePreviewTakesWhatTheOtherColumnsLeave()
    {
        const auto ends = [](const KrvFontsView& view) { return view.header()->length() - view.viewport()->width(); };
        {
            KrvFontsViewModel model;
            KrvFontsView view;
            view.setModel(&model);
            view.resize(1000, 300);
            view.show();
            QTRY_COMPARE(ends(view), 0);
            view.resize(1400, 300);
            QTRY_COMPARE(ends(view), 0);
            view.setColumnVisible(fonts::VersionColumn, true);
            QCOMPARE(ends(view), 0);
            view.header()->resizeSection(fonts::StyleNameColumn, 77);
            QTRY_COMPARE(ends(view), 0);
            // Where there is no room the samples stay legible and the list scrolls.
            view.resize(400, 300);
            QTRY_COMPARE(view.header()->sectionSize(fonts::PreviewColumn), 240);
        }
        {
            KrvFontsViewModel model;
            KrvFontsView view;
            view.setModel(&model);
            view.resize(1400, 300);
            view.show();
            QTRY_COMPARE(ends(view), 0);
            // A width by hand stays.
            view.header()->resizeSection(fonts::PreviewColumn, 333);
            view.resize(1200, 300);
        }
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        view.resize(1300, 300);
        view.show();
        QCOMPARE(view.header()->sectionSize(fonts::PreviewColumn), 333);
        QTRY_COMPARE(ends(view), 0);
        view.setColumnVisible(fonts::PreviewColumn, false);
        QTRY_COMPARE(ends(view), 0);
        view.setColumnVisible(fonts::PreviewColumn, true);
        QTRY_VERIFY(view.header()->sectionSize(fonts::PreviewColumn) > 400);
        QCOMPARE(ends(view), 0);
    }

    void selectionOutlivesAReload()
    {
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        model.sort(fonts::FamilyNameColumn);
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 4);
        view.selectFont(m_ids.at(0));
        // A group of the same fonts in another order resets the list.
        const FontGroupPtr other = makeFontGroup<FontGroup>(m_library->repository, QStringLiteral("Other"));
        model.setFontGroup(other);
        QTRY_VERIFY(!model.isFiltering());
        QCOMPARE(view.currentFontId(), m_ids.at(0));
        QCOMPARE(view.selectedFontIds(), QList<int>{m_ids.at(0)});

        // Rows apart from each other and side by side.
        const QList<int> chosen = {model.font(model.index(0, 0))->id(), model.font(model.index(2, 0))->id(),
                                   model.font(model.index(3, 0))->id()};
        for (const int row : {3, 0, 2})
            view.selectionModel()->select(model.index(row, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        view.selectionModel()->select(model.index(1, 0), QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
        model.setFontGroup(m_group);
        QTRY_VERIFY(!model.isFiltering());
        QCOMPARE(view.selectedFontIds(), chosen);
        m_library->repository->removeFonts({m_library->repository->font(m_ids.at(0))});
        QTRY_COMPARE(model.rowCount(), 3);
        QVERIFY(view.currentFontId() != 0);
    }

    void aFilteredFontHandsOverToItsNeighbour()
    {
        FontFiltersState filters;
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        view.resize(600, 400);
        view.show();
        model.sort(fonts::FamilyNameColumn);
        model.setFiltersState(&filters);
        model.setFontGroup(m_group);
        QTRY_COMPARE(names(model), QStringLiteral("alpha 2,Alpha 10,beta,gamma"));
        view.selectFont(m_ids.at(1));
        // The next one in the order that the user sees, not in that of the group.
        filters.setTextSearch(QStringLiteral("m"));
        QTRY_COMPARE(names(model), QStringLiteral("gamma"));
        QCOMPARE(view.selectedFontIds(), QList<int>{m_ids.at(3)});
        filters.setTextSearch(QString());
        QTRY_COMPARE(model.rowCount(), 4);
        QCOMPARE(view.selectedFontIds(), QList<int>{m_ids.at(3)});
        // Nothing follows: the one before.
        filters.setTextSearch(QStringLiteral("t"));
        QTRY_COMPARE(names(model), QStringLiteral("beta"));
        QCOMPARE(view.currentFontId(), m_ids.at(0));
        QCOMPARE(view.selectedFontIds(), QList<int>{m_ids.at(0)});
        // Shift extends from there.
        filters.clear();
        QTRY_COMPARE(model.rowCount(), 4);
        QTest::keyClick(&view, Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(view.selectedFontIds(), (QList<int>{m_ids.at(1), m_ids.at(0)}));
        // Who had chosen nothing is not made to.
        view.resetState(KrvFontsView::ResetSelection);
        filters.setTextSearch(QStringLiteral("t"));
        QTRY_COMPARE(names(model), QStringLiteral("beta"));
        QCOMPARE(view.currentFontId(), 0);
        QVERIFY(view.selectedFontIds().isEmpty());
    }

    void rowsComingAndGoingDoNotMoveTheOneLookedAt()
    {
        QList<StaticFontPtr> many;
        for (int i = 0; i < 200; ++i)
            many.append(makeFont(QStringLiteral("many %1").arg(i)));
        m_library->addFonts(many);
        FontFiltersState filters;
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        view.resize(600, 400);
        view.show();
        model.setFiltersState(&filters);
        model.setFontGroup(m_group);
        QTRY_COMPARE(model.rowCount(), 204);
        const int looked = many.at(77)->id();
        view.selectFont(looked);
        const auto height = [&] { return view.visualRect(model.indexOfFont(looked, fonts::PreviewColumn)).top(); };
        const int before = height();
        QVERIFY(before >= 0 && before < view.viewport()->height());
        filters.setTextSearch(QStringLiteral("7"));
        QTRY_COMPARE(model.rowCount(), 38);
        QVERIFY(height() >= 0 && height() < view.viewport()->height());
        filters.setTextSearch(QString());
        QTRY_COMPARE(model.rowCount(), 204);
        m_library->addFonts({makeFont(QStringLiteral("aa")), makeFont(QStringLiteral("ab"))});
        const int then = height();
        QTRY_COMPARE(model.rowCount(), 206);
        QCOMPARE(height(), then);
    }

    void typedLettersGoToAName()
    {
        KrvFontsViewModel model;
        KrvFontsView view;
        view.setModel(&model);
        view.setSelectionMode(QAbstractItemView::ExtendedSelection);
        model.sort(fonts::FamilyNameColumn);
        model.setFontGroup(m_group);
        QTRY_COMPARE(names(model), QStringLiteral("alpha 2,Alpha 10,beta,gamma"));
        // A preview has no letters of its own.
        view.setCurrentIndex(model.index(2, fonts::PreviewColumn));
        QTest::keyClicks(&view, QStringLiteral("alpha 1"));
        QCOMPARE(view.selectedFontIds(), QList<int>{m_ids.at(1)});
        QCOMPARE(view.currentIndex().column(), int(fonts::PreviewColumn));
        // One letter walks from font to font, also a capital.
        KrvFontsView another;
        another.setModel(&model);
        model.sort(fonts::FamilyNameColumn);
        another.setSelectionMode(QAbstractItemView::ExtendedSelection);
        QTest::keyClick(&another, 'A', Qt::ShiftModifier);
        QCOMPARE(another.selectedFontIds(), QList<int>{m_ids.at(2)});
        QTest::keyClick(&another, 'a');
        QCOMPARE(another.selectedFontIds(), QList<int>{m_ids.at(1)});
    }

private:
    static StaticFontPtr makeFont(const QString& family)
    {
        const StaticFontPtr font = TestLibrary::makeFont(QStringLiteral("/fonts/") + family, family);
        font->setFamilyName(family);
        return font;
    }

    static QString names(const KrvFontsViewModel& model)
    {
        QStringList list;
        for (int row = 0; row < model.rowCount(); ++row)
            list.append(model.index(row, fonts::FamilyNameColumn).data().toString());
        return list.join(QLatin1Char(','));
    }

    std::unique_ptr<TestLibrary> m_library;
    QList<int> m_ids;
    FontGroupPtr m_group;
};

KERVAL_TEST(FontsModelTest)
#include "FontsModelTest.moc"
