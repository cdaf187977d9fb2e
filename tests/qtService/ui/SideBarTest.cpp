#include "qtService/management/SystemFontGroupList.h"
#include "qtService/management/UserFontGroupList.h"
#include "qtService/ui/fonts/FontDrag.h"
#include "qtService/ui/sidebar/KrvUserGroupsViewModel.h"
#include "qtService/ui/sidebar/SideBarDelegate.h"
#include "qtService/ui/sidebar/SideBarModel.h"
#include "qtService/ui/sidebar/SideBarWidget.h"
#include "tests/qtService/database/TestLibrary.h"
#include "tests/support/testregistry.h"

#include <QAbstractItemModelTester>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QSignalSpy>
#include <QTextDocument>
#include <QTreeView>
#include <QtTest>

class SideBarTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_library = std::make_unique<TestLibrary>();
        m_ids = m_library->addFonts({TestLibrary::makeFont(QStringLiteral("/a"), QStringLiteral("a")),
                                     TestLibrary::makeFont(QStringLiteral("/b"), QStringLiteral("b"))});
        m_all = makeFontGroup<FontGroup>(m_library->repository, QStringLiteral("All Fonts"));
        m_system = QSharedPointer<SystemFontGroupList>::create();
        m_system->addGroup(SystemFontGroupList::AllFonts, m_all);
        m_user = QSharedPointer<UserFontGroupList>::create(m_all, m_library->userDatabase.data());
    }

    void cleanup()
    {
        m_user.clear();
        m_system.clear();
        m_all.clear();
        m_library.reset();
    }

    void theModelFollowsTheLists()
    {
        SideBarModel model(m_system, m_user, 1);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.indexOfGroup(SystemFontGroupList::AllFonts).data(SideBarModel::FontCountRole).toInt(), 2);
        const int group = addGroup(QStringLiteral("Mine"));
        QTRY_VERIFY(model.indexOfGroup(group).isValid());
        QVERIFY(!model.indexOfGroup(group).data(SideBarModel::IconRole).value<QImage>().isNull());
        m_library->userDatabase->renameGroup(group, QStringLiteral("Ours"));
        QTRY_COMPARE(model.indexOfGroup(group).data(SideBarModel::NameRole).toString(), QStringLiteral("Ours"));
        m_library->repository->removeFonts({m_library->repository->font(m_ids.first())});
        QTRY_COMPARE(model.indexOfGroup(SystemFontGroupList::AllFonts).data(SideBarModel::FontCountRole).toInt(), 1);
        m_library->userDatabase->removeGroup(group);
        QTRY_VERIFY(!model.indexOfGroup(group).isValid());
    }

    void groupsAreListedWithTheirNumbers()
    {
        const int first = addGroup(QStringLiteral("First"));
        KrvUserGroupsViewModel model(m_user);
        QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("First (0)"));
        const int second = addGroup(QStringLiteral("Second"));
        QTRY_COMPARE(model.rowCount(), 2);
        QCOMPARE(model.index(1, 0).data(Qt::UserRole).toInt(), second);
        m_library->userDatabase->renameGroup(first, QStringLiteral("Renamed"));
        QTRY_COMPARE(model.index(0, 0).data().toString(), QStringLiteral("Renamed (0)"));
        m_library->userDatabase->removeGroup(first);
        QTRY_COMPARE(model.rowCount(), 1);
        KrvGroupsViewModel all(m_system);
        QCOMPARE(all.index(0, 0).data().toString(), QStringLiteral("All Fonts (2)"));
    }

    void onlyTheUsersGroupsAreSorted()
    {
        const int zebra = addGroup(QStringLiteral("Zebra"));
        const int ape = addGroup(QStringLiteral("Ape"));
        KrvUiSettings* settings = KrvUiSettings::instance();
        settings->setValue(KrvUiSettings::SidGroupSortBy, int(SideBarModel::NameRole));
        SideBarWidget widget;
        widget.setGroups(m_system, m_user);
        const auto* model = widget.findChild<QTreeView*>()->model();
        const auto nth = [model](int row) {
            return model->index(row, 0, model->index(1, 0)).data(SideBarModel::GroupIdRole).toInt();
        };
        QCOMPARE(nth(0), ape);
        settings->setValue(KrvUiSettings::SidGroupSortOrder, int(Qt::DescendingOrder));
        QCOMPARE(nth(0), zebra);
        settings->setValue(KrvUiSettings::SidGroupSortOrder, int(Qt::AscendingOrder));
        settings->setValue(KrvUiSettings::SidGroupSortBy, int(SideBarModel::GroupIdRole));
        QCOMPARE(nth(0), zebra);
    }

    void choosingAGroupSaysWhich()
    {
        const int group = addGroup(QStringLiteral("Mine"));
        SideBarWidget widget;
        widget.setGroups(m_system, m_user);
        widget.show();
        auto* view = widget.findChild<QTreeView*>(QStringLiteral("treeView"));
        QSignalSpy spy(&widget, &SideBarWidget::groupIdSelected);
        const auto* model = static_cast<SideBarModel*>(view->model());
        const QPoint place = view->visualRect(model->indexOfGroup(group)).center();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier, place);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(widget.selectedUserGroupId(), group);
        QCOMPARE(widget.selectedGroup(), m_user->group(group));
        // Headers are captions, for the keyboard too.
        QTest::keyClick(view, Qt::Key_Up);
        QCOMPARE(widget.selectedGroupId(), int(SystemFontGroupList::AllFonts));
        QTest::keyClick(view, Qt::Key_Down);
        QCOMPARE(widget.selectedGroupId(), group);
        spy.clear();
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->visualRect(model->index(0, 0)).center());
        QCOMPARE(spy.count(), 0);
        QCOMPARE(widget.selectedGroupId(), group);
    }

    void aDeletedGroupIsNotLookedAtAnyMore()
    {
        const int group = addGroup(QStringLiteral("Mine"));
        const int other = addGroup(QStringLiteral("Other"));
        SideBarWidget widget;
        widget.setGroups(m_system, m_user);
        widget.selectGroup(group);
        QSignalSpy spy(&widget, &SideBarWidget::groupIdSelected);
        m_library->userDatabase->removeGroup(other);
        QTRY_VERIFY(!m_user->group(other));
        QCOMPARE(widget.selectedGroupId(), group);
        m_library->userDatabase->removeGroup(group);
        QTRY_COMPARE(widget.selectedGroupId(), int(SystemFontGroupList::AllFonts));
        QCOMPARE(spy.count(), 1);
    }

    void namesAreNoMarkup()
    {
        const int group = addGroup(QStringLiteral("<b>Bold</b> & <i>co</i>"));
        const SideBarModel model(m_system, m_user, 1);
        QTextDocument shown;
        shown.setHtml(model.indexOfGroup(group).data(Qt::ToolTipRole).toString());
        QCOMPARE(shown.toPlainText(), QStringLiteral("<b>Bold</b> & <i>co</i>"));
    }

    // Icon and number change sides with the direction of the interface; the row reads the other way round.
    void rowsFollowTheDirection()
    {
        SideBarModel model(m_system, m_user, 1);
        const QModelIndex row = model.indexOfGroup(SystemFontGroupList::AllFonts);
        const auto paint = [&row](Qt::LayoutDirection direction) {
            QImage image(200, 24, QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            painter.setLayoutDirection(direction);
            QStyleOptionViewItem option;
            option.rect = image.rect();
            option.direction = direction;
            SideBarDelegate().paint(&painter, option, row);
            return image;
        };
        const QImage plain = paint(Qt::LeftToRight);
        const QImage reversed = paint(Qt::RightToLeft);
        const QImage icon = row.data(SideBarModel::IconRole).value<QImage>();
        const QSize size = icon.size() / icon.devicePixelRatio();
        const QRect place(QPoint(10, (24 - size.height()) / 2), size);
        QCOMPARE(reversed.copy(QStyle::visualRect(Qt::RightToLeft, plain.rect(), place)), plain.copy(place));
        const QColor badge = plain.pixelColor(200 - 5 - 8, 12 - 6);
        QVERIFY(badge != QColor(Qt::white));
        QCOMPARE(reversed.pixelColor(5 + 8, 12 - 6), badge);
        QCOMPARE(reversed.pixelColor(200 - 2, 12), QColor(Qt::white));
    }

    void fontsAreDroppedOnGroups_data()
    {
        QTest::addColumn<bool>("hidden");
        QTest::newRow("fonts") << false;
        QTest::newRow("hidden fonts") << true;
    }

    void fontsAreDroppedOnGroups()
    {
        QFETCH(bool, hidden);
        SideBarWidget widget;
        widget.setGroups(m_system, m_user);
        widget.show();
        auto* view = widget.findChild<QTreeView*>(QStringLiteral("treeView"));
        const auto* model = static_cast<SideBarModel*>(view->model());
        const std::unique_ptr<QMimeData> data(fonts::createMimeData(m_library->repository->fonts(), hidden));
        QSignalSpy spy(&widget, &SideBarWidget::fontsDropped);
        drop(view, data.get(), view->visualRect(model->indexOfGroup(SystemFontGroupList::AllFonts)).center());
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.last().at(0).value<QList<int>>(), m_ids);
        QCOMPARE(spy.last().at(1).toInt(), int(SystemFontGroupList::AllFonts));
        drop(view, data.get(), view->visualRect(model->index(0, 0)).center());
        drop(view, data.get(), QPoint(5, view->viewport()->height() - 2));
        const QMimeData nothing;
        drop(view, &nothing, view->visualRect(model->indexOfGroup(SystemFontGroupList::AllFonts)).center());
        QCOMPARE(spy.count(), 1);
    }

private:
    int addGroup(const QString& name) { return m_library->userDatabase->addGroup(name, 0); }

    static void drop(QTreeView* view, const QMimeData* data, const QPoint& place)
    {
        // The framework delivers a drop to whoever accepted the drag.
        QDragEnterEvent enter(place, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &enter);
        QDragMoveEvent move(place, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &move);
        QDropEvent event(place, Qt::CopyAction, data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view->viewport(), &event);
    }

    std::unique_ptr<TestLibrary> m_library;
    QList<int> m_ids;
    FontGroupPtr m_all;
    QSharedPointer<SystemFontGroupList> m_system;
    QSharedPointer<UserFontGroupList> m_user;
};

KERVAL_TEST(SideBarTest)
#include "SideBarTest.moc"
