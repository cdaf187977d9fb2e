#include "qtService/ui/filter/FilterButtonsWidget.h"
#include "qtService/ui/filter/FontFiltersState.h"
#include "qtService/ui/filter/KrvAttributeSliderWidget.h"
#include "qtService/ui/filter/KrvFiltersWidget.h"
#include "qtService/ui/fonts/KrvPreviewTextSettingsWidget.h"
#include "qtService/ui/search/KrvFontsModelSearchBox.h"
#include "qtService/ui/search/KrvSearchBox2.h"
#include "tests/support/testregistry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSlider>
#include <QtTest>

class FilterWidgetsTest : public QObject
{
    Q_OBJECT

private slots:
    void formatsSpeakTheCataloguesNames()
    {
        KrvFiltersWidget widget;
        const QStringList all{QStringLiteral("TrueType"), QStringLiteral("OpenType"), QStringLiteral("Type 1")};
        QCOMPARE(widget.enabledFormats(), all);
        QSignalSpy spy(&widget, &KrvFiltersWidget::enabledFormatsChanged);
        QTest::mouseClick(widget.findChild<QCheckBox*>(QStringLiteral("trueTypeCheckBox")), Qt::LeftButton,
                          Qt::NoModifier, QPoint(8, 8));
        QCOMPARE(spy.last().at(0).toStringList(), all.mid(1));
        widget.setEnabledFormats({QStringLiteral("Type 1"), QStringLiteral("unknown")});
        QCOMPARE(widget.enabledFormats(), all.mid(2));
        widget.setEnabledFormats({});
        QCOMPARE(widget.enabledFormats(), all);
    }

    void characterRangesLeaveOutTheCatchAlls()
    {
        KrvFiltersWidget widget;
        auto* list = widget.findChild<QListWidget*>(QStringLiteral("lwCharacterRanges"));
        QCOMPARE(list->count(), 32);
        QSignalSpy spy(&widget, &KrvFiltersWidget::selectedCharacterRangesChanged);
        list->item(3)->setCheckState(Qt::Checked);
        list->item(1)->setCheckState(Qt::Checked);
        QCOMPARE(spy.last().at(0).value<QList<int>>(), (QList<int>{1, 3}));
        widget.reset();
        QVERIFY(widget.selectedCharacterRanges().isEmpty());
    }

    void foundriesKeepTheChoiceWhenTheyChange()
    {
        KrvFiltersWidget widget;
        widget.setFoundries({QStringLiteral("Zeta"), QStringLiteral("Alpha")});
        QCOMPARE(widget.foundries(), (QStringList{QString(), QStringLiteral("Alpha"), QStringLiteral("Zeta")}));
        QSignalSpy spy(&widget, &KrvFiltersWidget::currentFoundryChanged);
        widget.setCurrentFoundry(QStringLiteral("Zeta"));
        widget.setCurrentFoundry(QStringLiteral("unknown"));
        QCOMPARE(spy.count(), 1);
        widget.setFoundries({QStringLiteral("Zeta"), QStringLiteral("Beta")});
        QCOMPARE(widget.currentFoundry(), QStringLiteral("Zeta"));
        QCOMPARE(spy.count(), 1);
    }

    void atMostOnePageButtonIsChecked()
    {
        FilterButtonsWidget widget;
        QSignalSpy toggled(&widget, &FilterButtonsWidget::buttonToggled);
        QSignalSpy none(&widget, &FilterButtonsWidget::allButtonsUnchecked);
        auto* attributes = widget.findChild<QPushButton*>(QStringLiteral("btnAttributes"));
        auto* filters = widget.findChild<QPushButton*>(QStringLiteral("btnFitlers"));
        attributes->click();
        filters->click();
        QVERIFY(!attributes->isChecked());
        QCOMPARE(toggled.last(), (QList<QVariant>{1, true}));
        QCOMPARE(none.count(), 0);
        filters->click();
        QCOMPARE(none.count(), 1);
        QCOMPARE(widget.currentPage(), -1);
    }

    void aSliderCountsOnlyWhileItsBoxIsChecked()
    {
        KrvAttributeSliderWidget widget;
        QSignalSpy enabled(&widget, &KrvAttributeSliderWidget::sliderEnabledChanged);
        QVERIFY(!widget.isSliderEnabled());
        widget.findChild<QCheckBox*>()->click();
        QVERIFY(widget.isSliderEnabled());
        QCOMPARE(enabled.count(), 1);
        QSignalSpy value(&widget, &KrvAttributeSliderWidget::valueChanged);
        QTest::keyClick(widget.findChild<QSlider*>(), Qt::Key_End);
        QCOMPARE(value.last().at(0).toInt(), 5);
    }

    void typingIsSearchedForAfterAPause()
    {
        KrvSearchBox2 box(50);
        box.show();
        QSignalSpy spy(&box, &SearchBoxInterface::searchTermChanged);
        QTest::keyClicks(&box, QStringLiteral("abc"));
        QTRY_COMPARE(spy.count(), 1);
        QCOMPARE(spy.last().at(0).toString(), QStringLiteral("abc"));
        QTest::keyClick(&box, Qt::Key_Escape);
        QCOMPARE(spy.count(), 2);
        QCOMPARE(spy.last().at(0).toString(), QString());
    }

    void theSearchMenuChoosesFields()
    {
        FontFiltersState state;
        state.setTextSearch(QStringLiteral("left"));
        state.setTextSearchFields({0, 504});
        KrvFontsModelSearchBox box;
        box.setFontFiltersState(&state);
        QCOMPARE(box.findChild<QLineEdit*>()->text(), QStringLiteral("left"));
        const QList<QAction*> actions = box.findChild<QMenu*>()->actions();
        QCOMPARE(actions.size(), 9); // seven fields, a separator, "All"
        QVERIFY(actions.first()->isChecked() && actions.at(6)->isChecked() && !actions.at(1)->isChecked());
        actions.last()->trigger();
        QCOMPARE(state.textSearchFields(), (QList<int>{0, 1, 16, 8, 13, 10, 504}));
        actions.first()->trigger();
        QVERIFY(!actions.last()->isChecked());
        state.clear();
        QCOMPARE(box.findChild<QLineEdit*>()->text(), QString());
        QCOMPARE(state.textSearchFields().size(), 6);
    }

    void ownSampleTextsWaitForAPause()
    {
        KrvPreviewTextSettingsWidget widget;
        auto* texts = widget.findChild<QComboBox*>(QStringLiteral("sampleTextComboBox"));
        auto* editor = widget.findChild<QPlainTextEdit*>(QStringLiteral("sampleTextEditor"));
        QVERIFY(texts->count() > 12);
        QVERIFY(!editor->isEnabled());
        QSignalSpy spy(&widget, &KrvPreviewTextSettingsWidget::previewTextChanged);
        texts->setCurrentIndex(1);
        QCOMPARE(spy.last().at(0).toString(), texts->itemText(1));
        texts->setCurrentIndex(texts->count() - 1);
        QVERIFY(editor->isEnabled());
        const int before = spy.count();
        QTest::keyClicks(editor, QStringLiteral("my text"));
        QTRY_COMPARE_WITH_TIMEOUT(spy.count(), before + 1, 5000);
        QCOMPARE(spy.last().at(0).toString(), QStringLiteral("my text"));

        widget.setPreviewText(QStringLiteral("some other"));
        QCOMPARE(editor->toPlainText(), QStringLiteral("some other"));
        widget.setPreviewSize(16);
        QCOMPARE(widget.findChild<QComboBox*>(QStringLiteral("previewSizeComboBox"))->currentIndex(), -1);
        widget.setPreviewSize(40);
        QCOMPARE(widget.previewSize(), 40);
    }
};

KERVAL_TEST(FilterWidgetsTest)
#include "FilterWidgetsTest.moc"
