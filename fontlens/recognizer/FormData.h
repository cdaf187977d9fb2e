#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace kerval::recognizer {

// The fields of a query or of a form, decoded; of a repeated name the first counts.
class FormData
{
public:
    // "a=b&c=d". A plus sign is one: the clients escape spaces as "%20". Invalid UTF-8 becomes replacement characters.
    static FormData fromUrlEncoded(const QByteArray& text);
    // The boundary may follow a semicolon or a comma, and the last boundary line may lack its closing hyphens: both are
    // what the protocol's clients send. Nothing when there is no boundary, when no part begins, or when there are more
    // parts than any client has reason to send.
    static std::optional<FormData> fromMultipart(const QByteArray& contentType, const QByteArray& body);
    static bool isMultipart(const QByteArray& contentType);

    bool contains(const QString& name) const { return m_fields.contains(name); }
    QString text(const QString& name) const { return QString::fromUtf8(m_fields.value(name)); }
    QByteArray bytes(const QString& name) const { return m_fields.value(name); }

private:
    void add(const QString& name, const QByteArray& value);

    QHash<QString, QByteArray> m_fields;
};

} // namespace kerval::recognizer
