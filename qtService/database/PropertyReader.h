#pragma once

#include "qtService/database/FontField.h"

#include <QMetaProperty>

// A property of T found once by name and read from many objects.
template <class T>
class PropertyReader
{
public:
    PropertyReader() = default;
    explicit PropertyReader(const QString& name)
    {
        const int index = T::staticMetaObject.indexOfProperty(name.toUtf8().constData());
        if (index >= 0)
            m_property = T::staticMetaObject.property(index);
    }

    QVariant value(const T& object) const { return m_property.isValid() ? m_property.read(&object) : QVariant(); }

private:
    QMetaProperty m_property;
};

// Font records are read past the meta-object. Moments come in UTC: the same instants, but the way to a number of
// seconds asks the time zone's tables (and the file system for them) no more. A reader belongs to one thread.
template <>
class PropertyReader<fms::StaticFont>
{
public:
    PropertyReader() = default;
    explicit PropertyReader(const QString& name)
        : m_field(fms::FontField::find(name))
        , m_isFontHash(name == QLatin1String("fontHash"))
    {
    }

    QVariant value(const fms::StaticFont& font) const
    {
        if (!m_field)
            return QVariant();
        if (m_isFontHash)
            return font.fontHash();
        return fms::StaticFontAccess::read(font, [this](const fms::StaticFontData& data) -> QVariant {
            if (m_field->kind != fms::FontField::Time)
                return m_field->value(data);
            if (m_field->isSecondsText)
                return QDateTime::fromSecsSinceEpoch(m_field->seconds(data), Qt::UTC);
            return utc(m_field->moment(data));
        });
    }

private:
    // Faces that were found together share their moments, and most have none of some kind.
    QDateTime utc(const QDateTime& moment) const
    {
        if (moment != m_moment) {
            m_moment = moment;
            m_utcMoment = moment.toUTC();
        }
        return m_utcMoment;
    }

    const fms::FontField* m_field = nullptr;
    bool m_isFontHash = false;
    mutable QDateTime m_moment;
    mutable QDateTime m_utcMoment;
};
