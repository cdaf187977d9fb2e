#include "qtService/database/StaticFont.h"

#include "qtService/database/StaticFontData.h"

#include <QDataStream>
#include <QMetaType>

namespace fms {

namespace {

bool registerTypes()
{
    qRegisterMetaType<StaticFont::StringField>("StaticFont::StringField");
    qRegisterMetaType<QList<int>>("QList<int>");
    qRegisterMetaType<QSet<int>>("QSet<int>");
    qRegisterMetaTypeStreamOperators<QList<int>>("QList<int>");
    qRegisterMetaTypeStreamOperators<QSet<int>>("QSet<int>");
    qRegisterMetaType<StaticFontPtr>("StaticFontPtr");
    qRegisterMetaType<QList<StaticFontPtr>>("QList<StaticFontPtr>");
    return true;
}

} // namespace

StaticFont::StaticFont()
    : m_data(new StaticFontData)
{
    static const bool registered = registerTypes();
    Q_UNUSED(registered)
}

StaticFont::~StaticFont() = default;

const QStringList& StaticFont::exportedProperties()
{
    static const QStringList names{QStringLiteral("familyName"),     QStringLiteral("styleName"),
                                   QStringLiteral("postScriptName"), QStringLiteral("fileName"),
                                   QStringLiteral("version"),        QStringLiteral("vendor"),
                                   QStringLiteral("vendorUrl"),      QStringLiteral("designer"),
                                   QStringLiteral("designerUrl"),    QStringLiteral("description"),
                                   QStringLiteral("trademark"),      QStringLiteral("license"),
                                   QStringLiteral("licenseUrl"),     QStringLiteral("format"),
                                   QStringLiteral("foundry"),        QStringLiteral("dateAdded"),
                                   QStringLiteral("userNote"),       QStringLiteral("onlinseSource"),
                                   QStringLiteral("otherInfo2"),     QStringLiteral("id"),
                                   QStringLiteral("isBold"),         QStringLiteral("isItalic"),
                                   QStringLiteral("activityType"),   QStringLiteral("italicAngle"),
                                   QStringLiteral("isHidden"),       QStringLiteral("supportedSubsets")};
    return names;
}

int StaticFont::activityType() const
{
    QReadLocker locker(&m_lock);
    return m_data.constData()->activityType;
}

void StaticFont::setActivityType(int activityType)
{
    {
        QReadLocker locker(&m_lock);
        if (m_data.constData()->activityType == activityType)
            return;
    }
    {
        QWriteLocker locker(&m_lock);
        m_data->activityType = activityType;
    }
    emit activityTypeChanged();
}

// Once computed the hash stays: it is the face's identity for the user's data, whatever becomes of its file.
QString StaticFont::fontHash() const
{
    QString hash;
    {
        QReadLocker locker(&m_lock);
        if (!m_data.constData()->fontHash.isEmpty())
            return m_data.constData()->fontHash;
        hash = m_data.constData()->computedFontHash();
    }
    QWriteLocker locker(&m_lock);
    if (m_data.constData()->fontHash.isEmpty())
        m_data->fontHash = hash;
    return m_data.constData()->fontHash;
}

bool StaticFont::isSerif() const
{
    QReadLocker locker(&m_lock);
    return m_data.constData()->hasClass(Serif);
}

bool StaticFont::isSymbol() const
{
    QReadLocker locker(&m_lock);
    return m_data.constData()->hasClass(Symbol);
}

bool StaticFont::isMonospacedClass() const
{
    QReadLocker locker(&m_lock);
    return m_data.constData()->hasClass(Monospace);
}

int StaticFont::opticalSize() const
{
    QReadLocker locker(&m_lock);
    return m_data.constData()->opticalSize();
}

} // namespace fms
