#include "qtService/ui/details/KrvFontDetailsTabWidget.h"
#include "qtService/ui/filter/FilterButtonsWidget.h"
#include "qtService/ui/filter/KrvAttributeSliderWidget.h"
#include "qtService/ui/filter/KrvAttributesWidget.h"
#include "qtService/ui/filter/KrvFiltersWidget.h"
#include "qtService/ui/search/KrvFontsModelSearchBox.h"
#include "qtService/ui/window/KrvFontManagerWindow.h"
#include "qtService/ui/window/ScreenGeometry.h"
#include "qtService/ui/window/WindowActions.h"

#include <QAction>
#include <QSplitter>
#include <QStackedWidget>

// What of the window outlives it: its places and its filters.

namespace {

using Settings = KrvUiSettings;

// The splitter counts a pane that is put away as nothing; it comes back as high as it was.
QList<int> sizesOf(const QSplitter& splitter, int heightWhenShown)
{
    QList<int> sizes = splitter.sizes();
    if (splitter.widget(splitter.count() - 1)->isHidden()) {
        sizes.first() = qMax(0, sizes.first() - heightWhenShown);
        sizes.last() = heightWhenShown;
    }
    return sizes;
}

} // namespace

void KrvFontManagerWindow::restoreSettings()
{
    const Settings* settings = Settings::instance();
    if (settings->contains(Settings::SidMainWindowGeometry))
        setGeometry(ui::onScreen(settings->value(Settings::SidMainWindowGeometry).toRect()));
    if (settings->contains(Settings::SidListDetailsSplitterSizes))
        restoreDetailsSizes(settings->value(Settings::SidListDetailsSplitterSizes).value<QList<int>>());
    if (settings->contains(Settings::SidListToolsSplitterSizes))
        restoreToolsSizes(settings->value(Settings::SidListToolsSplitterSizes).value<QList<int>>());
    if (settings->contains(Settings::SidFontDetailsShown))
        m_actions->showDetails->setChecked(settings->value(Settings::SidFontDetailsShown).toBool());
    if (settings->contains(Settings::SidFontListToolsTabId))
        m_filterButtons->setCurrentPage(settings->value(Settings::SidFontListToolsTabId).toInt());
}

void KrvFontManagerWindow::restoreToolsSizes(const QList<int>& sizes)
{
    if (sizes.size() != m_listToolsSplitter->count())
        return;
    m_toolsHeight = sizes.last();
    m_listToolsSplitter->setSizes(sizes);
}

void KrvFontManagerWindow::restoreDetailsSizes(const QList<int>& sizes)
{
    if (sizes.size() != m_listDetailsSplitter->count())
        return;
    m_detailsHeight = sizes.last();
    m_listDetailsSplitter->setSizes(sizes);
}

void KrvFontManagerWindow::showDetails(bool shown)
{
    if (!shown && m_details->isVisible())
        m_detailsHeight = m_details->height();
    m_details->setVisible(shown);
}

void KrvFontManagerWindow::saveSettings()
{
    Settings* settings = Settings::instance();
    // A maximised window's geometry is the screen's; the one to come back to is the one before.
    settings->setValue(Settings::SidMainWindowGeometry, isMaximized() ? normalGeometry() : geometry());
    settings->setValue(Settings::SidListDetailsSplitterSizes,
                       QVariant::fromValue(sizesOf(*m_listDetailsSplitter, m_detailsHeight)));
    settings->setValue(Settings::SidListToolsSplitterSizes,
                       QVariant::fromValue(sizesOf(*m_listToolsSplitter, m_toolsHeight)));
    settings->setValue(Settings::SidFontDetailsShown, m_actions->showDetails->isChecked());
    settings->setValue(Settings::SidFontListToolsTabId, m_filterButtons->currentPage());
}

void KrvFontManagerWindow::restoreFilters()
{
    const Settings* settings = Settings::instance();
    if (settings->contains(Settings::SidFilteringCriteria))
        m_filters = settings->value(Settings::SidFilteringCriteria).value<FontFiltersState>();
    const FontFiltersState state = m_filters;
    {
        const QSignalBlocker blocker(m_filterPanel);
        m_filterPanel->setEnabledFormats(state.formats());
        m_filterPanel->setSerifsEnabled(state.serifs());
        m_filterPanel->setSansSerifsEnabled(state.sanserifs());
        m_filterPanel->setMonosEnabled(state.monospaced());
        m_filterPanel->setNonMonosEnabled(state.nonMonospaced());
        m_filterPanel->setSymbolsEnabled(state.symbols());
        m_filterPanel->setNonSymbolsEnabled(state.nonsymbols());
        m_filterPanel->setSelectedCharacterRanges(state.unicodeSubsets());
    }
    const QList<QPair<KrvAttributeSliderWidget*, int>> sliders{{m_attributes->weightSlider(), state.weight()},
                                                               {m_attributes->widthSlider(), state.width()},
                                                               {m_attributes->italicAngleSlider(), state.angle()},
                                                               {m_attributes->opticalSizeSlider(), state.optsize()}};
    for (const auto& [slider, value] : sliders) {
        const QSignalBlocker blocker(slider);
        slider->setValue(qMax(1, value));
        slider->setSliderEnabled(value > 0);
    }
    m_search->setFontFiltersState(&m_filters);
}
