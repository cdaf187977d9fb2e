#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

// Builds the header of the legacy request server's replies. Its reason phrase is "OK" whatever the status code is.
class HttpHeader : public QObject
{
    Q_OBJECT

public:
    explicit HttpHeader(QObject* parent = nullptr);

    void setStatusCode(int statusCode) { m_statusCode = statusCode; }
    int statusCode() const { return m_statusCode; }
    void setHeader(const QString& field, const QString& value) { m_headers.insert(field, value); }
    QString header(const QString& field) const { return m_headers.value(field); }

    QByteArray toByteArray() const;

private:
    QHash<QString, QString> m_headers;
    int m_statusCode = 200;
};
