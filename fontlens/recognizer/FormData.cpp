#include "fontlens/recognizer/FormData.h"

#include <QRegularExpression>

namespace kerval::recognizer {

namespace {

constexpr int maximumParts = 32;
constexpr int maximumPartHeader = 8 * 1024;

QByteArray boundaryOf(const QByteArray& contentType)
{
    static const QRegularExpression expression(
        QStringLiteral("[;,]\\s*boundary\\s*=\\s*(?:\"([^\"]{1,200})\"|([^\\s;,\"]{1,200}))"),
        QRegularExpression::CaseInsensitiveOption);
    const auto match = expression.match(QString::fromLatin1(contentType));
    return (match.captured(1) + match.captured(2)).toLatin1();
}

// The name of the part whose header lines these are; null when they name none.
QString partName(const QByteArray& header)
{
    static const QRegularExpression expression(
        QStringLiteral("^content-disposition\\s*:\\s*form-data\\s*;(?:[^\\r\\n]*[;\\s])?\\s*name\\s*=\\s*"
                       "(?:\"([^\"\\r\\n]*)\"|([^\\s;\"]+))"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption);
    const auto match = expression.match(QString::fromUtf8(header));
    return match.hasMatch() ? match.captured(1) + match.captured(2) : QString();
}

} // namespace

FormData FormData::fromUrlEncoded(const QByteArray& text)
{
    FormData form;
    const QList<QByteArray> items = text.split('&');
    for (const QByteArray& item : items) {
        const int equals = item.indexOf('=');
        const QByteArray name = equals < 0 ? item : item.left(equals);
        const QByteArray value = equals < 0 ? QByteArray() : item.mid(equals + 1);
        form.add(QString::fromUtf8(QByteArray::fromPercentEncoding(name)), QByteArray::fromPercentEncoding(value));
    }
    return form;
}

bool FormData::isMultipart(const QByteArray& contentType)
{
    return contentType.trimmed().toLower().startsWith("multipart/form-data");
}

std::optional<FormData> FormData::fromMultipart(const QByteArray& contentType, const QByteArray& body)
{
    const QByteArray boundary = boundaryOf(contentType);
    if (boundary.isEmpty())
        return std::nullopt;
    const QByteArray opening = "--" + boundary;
    const QByteArray delimiter = "\r\n" + opening;
    // What stands before the first boundary line is nobody's.
    int position = body.startsWith(opening) ? 0 : body.indexOf(delimiter);
    if (position < 0)
        return std::nullopt;
    position += position == 0 ? opening.size() : delimiter.size();

    FormData form;
    for (int parts = 0; body.mid(position, 2) == "\r\n"; ++parts) {
        if (parts == maximumParts)
            return std::nullopt;
        position += 2;
        const int headerEnd = body.indexOf("\r\n\r\n", position);
        if (headerEnd < 0)
            break; // the last line, without its hyphens
        const int next = body.indexOf(delimiter, headerEnd + 2);
        if (next < 0 || headerEnd - position > maximumPartHeader)
            break;
        const int begin = headerEnd + 4;
        const QString name = partName(body.mid(position, headerEnd - position));
        if (!name.isNull())
            form.add(name, next > begin ? body.mid(begin, next - begin) : QByteArray());
        position = next + delimiter.size();
    }
    return form;
}

void FormData::add(const QString& name, const QByteArray& value)
{
    if (!m_fields.contains(name))
        m_fields.insert(name, value);
}

} // namespace kerval::recognizer
