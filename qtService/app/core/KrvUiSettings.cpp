#include "qtService/app/core/KrvUiSettings.h"

#include "qtService/app/core/SettingsFolders.h"

#include <QDataStream>
#include <QMetaEnum>
#include <QSettings>

namespace {

QString keyOf(KrvUiSettings::SettingId id)
{
    return QLatin1String(QMetaEnum::fromType<KrvUiSettings::SettingId>().valueToKey(id));
}

} // namespace

KrvUiSettings::KrvUiSettings(QObject* parent)
    : QObject(parent)
    , m_settings(
          new QSettings(krv::userSettingsFolder() + QStringLiteral("uisettings.ini"), QSettings::IniFormat, this))
{
    // Lists of numbers (widths, orders, columns) are stored as variants and need their stream operators.
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaTypeStreamOperators<QList<int>>("QList<int>");
}

KrvUiSettings::~KrvUiSettings() = default;

bool KrvUiSettings::contains(SettingId id) const
{
    return m_settings->contains(keyOf(id));
}

QVariant KrvUiSettings::value(SettingId id, const QVariant& defaultValue) const
{
    return m_settings->value(keyOf(id), defaultValue);
}

void KrvUiSettings::setValue(SettingId id, const QVariant& value)
{
    m_settings->setValue(keyOf(id), value);
    emit valueChanged(id);
}
