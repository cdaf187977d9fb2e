#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <QString>

namespace api::rest {

// Writes compact JSON straight into a byte array, members in the order in which they are written. The caller keeps
// keys, values and brackets in step; commas come by themselves.
class JsonWriter
{
public:
    explicit JsonWriter(QByteArray& out)
        : m_out(out)
    {
    }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }

    // For names that need no escaping.
    void key(QLatin1String name);

    void value(int number);
    void value(bool truth);
    // Lone surrogates, which JSON cannot carry, become U+FFFD.
    void value(const QString& text);
    void value(const char*) = delete; // would be taken for a bool
    void null();
    // A value that has been written as JSON before.
    void encoded(const QByteArray& json);

    template <class Value>
    void member(QLatin1String name, const Value& v)
    {
        key(name);
        value(v);
    }

private:
    void open(char bracket);
    void close(char bracket);
    void separate();

    QByteArray& m_out;
    bool m_needsComma = false;
};

} // namespace api::rest
