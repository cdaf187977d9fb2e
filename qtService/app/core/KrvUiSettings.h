#pragma once

#include "qtService/app/core/KrvSingletonObject.h"

#include <QObject>
#include <QVariant>

class QSettings;

// uisettings.ini: how the user left the window. The key of a setting is its enumerator's name. Main thread.
class KrvUiSettings : public QObject, public KrvSingletonObject<KrvUiSettings>
{
    Q_OBJECT

public:
    enum SettingId
    {
        SidFilteringCriteria = 0,
        SidPreviewText,
        SidPreviewSize,
        SidVisibleColumns,
        SidSortColumnIndex,
        SidSortOrder,
        SidColumnWidths,
        SidColumnOrders,
        SidMainWindowGeometry,
        SidMainWindowState,
        SidListDetailsSplitterSizes,
        SidListToolsSplitterSizes,
        SidCharacterMapRange,
        SidCharacterMapSize,
        SidLastFontListingFileName,
        SidLastSampleSheetFileName,
        SidLastExportFileName,
        SidLastAddFoldersPath,
        SidLastAddFilesPath,
        SidFontDetailsShown,
        SidFontListToolsTabId,
        SidGroupSortBy,
        SidGroupSortOrder
    };
    Q_ENUM(SettingId)

    explicit KrvUiSettings(QObject* parent);
    ~KrvUiSettings() override;

    bool contains(KrvUiSettings::SettingId id) const;
    QVariant value(KrvUiSettings::SettingId id, const QVariant& defaultValue = QVariant()) const;
    void setValue(KrvUiSettings::SettingId id, const QVariant& value);

signals:
    void valueChanged(KrvUiSettings::SettingId id);

private:
    QSettings* m_settings;
};
