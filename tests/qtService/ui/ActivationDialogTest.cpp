#include "qtService/app/service/FontManagementService.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/ui/dialogs/FontActivationDialog.h"
#include "tests/qtService/ui/WindowLibrary.h"
#include "tests/support/testregistry.h"
#include "tests/support/testtree.h"

#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableWidget>
#include <QTreeWidget>
#include <QtTest>

using namespace kerval::systemfm;

// The dialog that follows a change of activity, over a real service; what it did is looked for in the library.
class ActivationDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_library = std::make_unique<WindowLibrary>();
        m_ids = m_library->addFonts(3);
    }
    void cleanup() { m_library.reset(); }

    void aCleanChangeIsToldUntilItIsClosed()
    {
        FontActivationDialog dialog(m_library->service(), m_ids, PermanentlyActive, QStringLiteral("Activation"));
        QCOMPARE(dialog.findChild<QLabel*>(QStringLiteral("lblDescription"))->text(),
                 QStringLiteral("Activating 3 font(s)"));
        QVERIFY(runAndClose(dialog).startsWith(QStringLiteral("3 fonts activated\n")));
        for (const int id : qAsConst(m_ids))
            QCOMPARE(m_library->font(id)->activityType(), int(PermanentlyActive));

        FontActivationDialog back(m_library->service(), m_ids, Inactive, QStringLiteral("Deactivation"));
        QCOMPARE(back.findChild<QLabel*>(QStringLiteral("lblDescription"))->text(),
                 QStringLiteral("Deactivating 3 font(s)"));
        QVERIFY(runAndClose(back).startsWith(QStringLiteral("3 fonts deactivated\n")));
        for (const int id : qAsConst(m_ids))
            QCOMPARE(m_library->font(id)->activityType(), int(Inactive));
    }

    void failuresAreGroupedByReason()
    {
        const int system = m_library->addFont(QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"),
                                              QStringLiteral("Protected"), QStringLiteral("Protected"));
        const int gone = m_library->addFont(m_library->path(QStringLiteral("fonts/gone.ttf")), QStringLiteral("Gone"),
                                            QStringLiteral("Gone"));
        writeFile(m_library->path(QStringLiteral("fonts/text.ttf")), "no font at all");
        const int text = m_library->addFont(m_library->path(QStringLiteral("fonts/text.ttf")), QStringLiteral("Text"),
                                            QStringLiteral("Text"));
        FontActivationDialog dialog(m_library->service(), {system, m_ids.first(), gone, text, 4711}, TemporarilyActive,
                                    QStringLiteral("Activation"));
        QTimer::singleShot(0, &dialog, [&] {
            auto* close = dialog.findChild<QPushButton*>(QStringLiteral("btnClose"));
            QTRY_VERIFY(close->isVisible());
            report(dialog);
            m_closeHadFocus = close->hasFocus();
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QVERIFY(m_closeHadFocus);
        QVERIFY(!m_cancelVisible);
        QVERIFY(!m_barVisible);
        QVERIFY(m_rows.isEmpty());
        QCOMPARE(m_description, QStringLiteral("Failed to activate the following fonts:"));
        QCOMPARE(m_failures.value(QStringLiteral("Activity of system fonts can't be changed")),
                 QStringList(QStringLiteral("Protected Book")));
        QStringList others;
        for (const QString& reason : {QStringLiteral("General activation faliure"),
                                      QStringLiteral("Unsupported font on this operating system")})
            others += m_failures.value(reason);
        others.sort();
        QCOMPARE(others,
                 QStringList({QStringLiteral("4711"), QStringLiteral("Gone Book"), QStringLiteral("Text Book")}));
        QCOMPARE(m_library->font(m_ids.first())->activityType(), int(TemporarilyActive));
        QCOMPARE(m_library->font(gone)->activityType(), int(Inactive));
    }

    void systemFontsStayActive()
    {
        const int system = m_library->addFont(QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"),
                                              QStringLiteral("Protected"), QStringLiteral("Protected"));
        FontActivationDialog dialog(m_library->service(), {system}, Inactive, QStringLiteral("Deactivation"));
        QTimer::singleShot(0, &dialog, [&] {
            QTRY_VERIFY(dialog.findChild<QPushButton*>(QStringLiteral("btnClose"))->isVisible());
            report(dialog);
            QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("btnClose")), Qt::LeftButton);
        });
        dialog.exec();
        QCOMPARE(m_description, QStringLiteral("Failed to deactivate the following fonts:"));
        QCOMPARE(m_failures.size(), 1);
    }

    void conflictsAreListedWithTheOtherFile()
    {
        const QString file = m_library->path(QStringLiteral("fonts/other.ttf"));
        QFile::link(QStringLiteral("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"), file);
        const int other = m_library->addFont(file, QStringLiteral("Other"), QStringLiteral("Family1-Book"));
        FontActivationDialog first(m_library->service(), {other}, PermanentlyActive, QString());
        runAndClose(first);
        QCOMPARE(m_library->font(other)->activityType(), int(PermanentlyActive));

        FontActivationDialog dialog(m_library->service(), m_ids, PermanentlyActive, QStringLiteral("Activation"));
        QTimer::singleShot(0, &dialog, [&] {
            QTRY_VERIFY(dialog.findChild<QPushButton*>(QStringLiteral("btnClose"))->isVisible());
            report(dialog);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        dialog.exec();
        QVERIFY(m_failures.isEmpty());
        QCOMPARE(m_rows.size(), 1);
        QCOMPARE(m_rows.first().mid(1),
                 QStringList({QStringLiteral("Family 1 Book"), m_library->font(m_ids.first())->fileName(), file}));
        QCOMPARE(m_library->font(m_ids.at(0))->activityType(), int(Inactive));
        QCOMPARE(m_library->font(m_ids.at(1))->activityType(), int(PermanentlyActive));
    }

    void cancelLeavesTheRestAlone()
    {
        m_ids += m_library->addFonts(1500);
        FontActivationDialog dialog(m_library->service(), m_ids, PermanentlyActive, QStringLiteral("Activation"));
        // At once, while hundreds are still to come.
        QTimer::singleShot(0, &dialog, [&dialog] {
            QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("btnCancel")), Qt::LeftButton);
        });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        const auto isActive = [this](int id) { return m_library->font(id)->activityType() != int(Inactive); };
        QVERIFY(std::count_if(m_ids.begin(), m_ids.end(), isActive) < m_ids.size());
    }

private:
    // What the dialog says in the end, with nothing but its text and the button left.
    static QString runAndClose(FontActivationDialog& dialog)
    {
        QString said;
        QTimer::singleShot(0, &dialog, [&] {
            auto* close = dialog.findChild<QPushButton*>(QStringLiteral("btnClose"));
            QTRY_VERIFY(close->isVisible());
            QVERIFY(!dialog.findChild<QWidget*>(QStringLiteral("progressBar"))->isVisible());
            QVERIFY(!dialog.findChild<QWidget*>(QStringLiteral("btnCancel"))->isVisible());
            QVERIFY(!dialog.findChild<QWidget*>(QStringLiteral("treeWidget"))->isVisible());
            said = dialog.findChild<QLabel*>(QStringLiteral("lblDescription"))->text();
            QTest::mouseClick(close, Qt::LeftButton);
        });
        dialog.exec();
        return said;
    }

    void report(const FontActivationDialog& dialog)
    {
        m_cancelVisible = dialog.findChild<QPushButton*>(QStringLiteral("btnCancel"))->isVisible();
        m_barVisible = dialog.findChild<QProgressBar*>(QStringLiteral("progressBar"))->isVisible();
        m_description = dialog.findChild<QLabel*>(QStringLiteral("lblTreeDescription"))->text();
        m_failures.clear();
        m_rows.clear();
        const auto* tree = dialog.findChild<QTreeWidget*>(QStringLiteral("treeWidget"));
        for (int i = 0; tree->isVisible() && i < tree->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* reason = tree->topLevelItem(i);
            QVERIFY(reason->isExpanded());
            for (int child = 0; child < reason->childCount(); ++child)
                m_failures[reason->text(0)].append(reason->child(child)->text(0));
        }
        const auto* table = dialog.findChild<QTableWidget*>(QStringLiteral("tableWidget"));
        for (int row = 0; table->isVisible() && row < table->rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < table->columnCount(); ++column)
                texts.append(table->item(row, column)->text());
            m_rows.append(texts);
        }
    }

    static void writeFile(const QString& path, const QByteArray& content) { kerval::testing::writeFile(path, content); }

    std::unique_ptr<WindowLibrary> m_library;
    QList<int> m_ids;
    bool m_cancelVisible = true;
    bool m_barVisible = true;
    bool m_closeHadFocus = false;
    QString m_description;
    QHash<QString, QStringList> m_failures;
    QList<QStringList> m_rows;
};

KERVAL_TEST(ActivationDialogTest)
#include "ActivationDialogTest.moc"
