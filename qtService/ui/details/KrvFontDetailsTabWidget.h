#pragma once

#include "qtService/ui/details/KrvAbstractFontDetailsWidget.h"

class ActiveFontSwitchWidget;
class FontManagementService;
class KrvCharacterMapWidget;
class KrvWaterfallWidget;
class QTabWidget;

// The details pane below the list: character map, waterfall and table of the current font. Character map and waterfall
// render, so they wait until the selection has rested and until their tab is seen; the table only for the latter.
// Beside the tabs the font is switched on and off.
class KrvFontDetailsTabWidget : public KrvAbstractFontDetailsWidget
{
    Q_OBJECT

public:
    explicit KrvFontDetailsTabWidget(QWidget* parent = nullptr);

    // With it comes the switch for the font's activity; to be called once.
    void setService(const QSharedPointer<FontManagementService>& service);
    void setContext(const QSharedPointer<UserFontGroupList>& context) override;
    void setFont(const StaticFontPtr& font) override;
    void setFontCollection(const QSharedPointer<FontCollectionInterface>& collection) override;

public slots:
    // The sample text and size of the list, for the waterfall: it takes the text over, and brings the row of the size
    // in sight. An empty text (each font's own name in the list) leaves the waterfall's own.
    void setPreviewText(QString text);
    void setPreviewSize(int size);

protected slots:
    void updateView() override;

private:
    QTabWidget* m_tabs;
    ActiveFontSwitchWidget* m_switch = nullptr;
    KrvCharacterMapWidget* m_characterMap;
    KrvWaterfallWidget* m_waterfall;
    QList<KrvAbstractFontDetailsWidget*> m_contents;
};
