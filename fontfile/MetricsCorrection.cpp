#include "fontfile/KrvFontMetrics.h"

#include <QDataStream>
#include <QStringList>

#include <cmath>

bool KrvFontMetrics::MetricsCorrection::isValid() const
{
    const auto counts = [](double value) { return value != -1.0 && std::isfinite(value); };
    return counts(c0) && counts(c1) && counts(c2);
}

QString KrvFontMetrics::MetricsCorrection::toString() const
{
    const auto number = [](double value) { return QString::number(value, 'E', 4); };
    return QStringList{number(c0), number(c1), number(c2)}.join(QLatin1Char(';'));
}

KrvFontMetrics::MetricsCorrection KrvFontMetrics::MetricsCorrection::fromString(const QString& text)
{
    const QVector<QStringRef> parts = text.splitRef(QLatin1Char(';'), Qt::SkipEmptyParts);
    if (parts.size() != 3)
        return {};
    return {parts.at(0).toDouble(), parts.at(1).toDouble(), parts.at(2).toDouble()};
}

QDataStream& operator<<(QDataStream& stream, const KrvFontMetrics::MetricsCorrection& correction)
{
    return stream << correction.c0 << correction.c1 << correction.c2;
}

QDataStream& operator>>(QDataStream& stream, KrvFontMetrics::MetricsCorrection& correction)
{
    return stream >> correction.c0 >> correction.c1 >> correction.c2;
}
