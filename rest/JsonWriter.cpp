#include "rest/JsonWriter.h"

namespace api::rest {

namespace {

// The letter behind the backslash of a short escape; 'u' for controls without one; 0 for what stands for itself.
constexpr char escapeOf(ushort c)
{
    switch (c) {
    case '"':
        return '"';
    case '\\':
        return '\\';
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return c < 0x20 ? 'u' : 0;
    }
}

char* writeEscaped(char* to, ushort c, char escape)
{
    *to++ = '\\';
    *to++ = escape;
    if (escape == 'u') {
        const char* digits = "0123456789abcdef";
        *to++ = '0';
        *to++ = '0';
        *to++ = digits[c >> 4];
        *to++ = digits[c & 15];
    }
    return to;
}

char* writeUtf8(char* to, uint c)
{
    if (c < 0x800) {
        *to++ = char(0xC0 | (c >> 6));
    } else if (c < 0x10000) {
        *to++ = char(0xE0 | (c >> 12));
        *to++ = char(0x80 | ((c >> 6) & 0x3F));
    } else {
        *to++ = char(0xF0 | (c >> 18));
        *to++ = char(0x80 | ((c >> 12) & 0x3F));
        *to++ = char(0x80 | ((c >> 6) & 0x3F));
    }
    *to++ = char(0x80 | (c & 0x3F));
    return to;
}

constexpr int chunkLength = 256;

} // namespace

void JsonWriter::separate()
{
    if (m_needsComma)
        m_out.append(',');
    m_needsComma = true;
}

void JsonWriter::open(char bracket)
{
    separate();
    m_out.append(bracket);
    m_needsComma = false;
}

void JsonWriter::close(char bracket)
{
    m_out.append(bracket);
    m_needsComma = true;
}

void JsonWriter::key(QLatin1String name)
{
    separate();
    m_out.append('"');
    m_out.append(name.data(), name.size());
    m_out.append("\":", 2);
    m_needsComma = false;
}

void JsonWriter::value(int number)
{
    separate();
    char digits[16];
    char* at = digits + sizeof digits;
    // In unsigned arithmetic, which can negate the smallest number.
    unsigned rest = number < 0 ? 0u - unsigned(number) : unsigned(number);
    do {
        *--at = char('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0)
        *--at = '-';
    m_out.append(at, int(digits + sizeof digits - at));
}

void JsonWriter::value(bool truth)
{
    separate();
    if (truth)
        m_out.append("true", 4);
    else
        m_out.append("false", 5);
}

void JsonWriter::null()
{
    separate();
    m_out.append("null", 4);
}

void JsonWriter::encoded(const QByteArray& json)
{
    separate();
    m_out.append(json);
}

void JsonWriter::value(const QString& text)
{
    separate();
    m_out.append('"');
    const ushort* at = text.utf16();
    const ushort* const end = at + text.size();
    // In pieces on the stack, so that the array grows by what is really written. Six bytes are the most that one unit
    // becomes.
    char buffer[chunkLength * 6];
    while (at < end) {
        char* to = buffer;
        const ushort* const chunkEnd = end - at > chunkLength ? at + chunkLength : end;
        while (at < chunkEnd) {
            const ushort c = *at++;
            if (c < 0x80) {
                const char escape = escapeOf(c);
                if (escape == 0)
                    *to++ = char(c);
                else
                    to = writeEscaped(to, c, escape);
            } else if (!QChar::isSurrogate(c)) {
                to = writeUtf8(to, c);
            } else if (QChar::isHighSurrogate(c) && at < end && QChar::isLowSurrogate(*at)) {
                to = writeUtf8(to, QChar::surrogateToUcs4(c, *at++));
            } else {
                to = writeUtf8(to, QChar::ReplacementCharacter);
            }
        }
        m_out.append(buffer, int(to - buffer));
    }
    m_out.append('"');
}

} // namespace api::rest
