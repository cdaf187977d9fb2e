#include "rest/http/RequestParser.h"

#include <QXmlInputSource>
#include <QXmlSimpleReader>

namespace fms {

namespace {
constexpr int maximumDepth = 16;
}

RequestParser::RequestParser(FMSRequest* request)
    : m_request(request)
{
}

bool RequestParser::parse(const QString& text, FMSRequest& request)
{
    RequestParser handler(&request);
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.setLexicalHandler(&handler);
    reader.setEntityResolver(&handler);
    QXmlInputSource source;
    source.setData(text);
    return reader.parse(&source);
}

bool RequestParser::startElement(const QString&, const QString&, const QString& qualifiedName, const QXmlAttributes&)
{
    takeText();
    m_element = qualifiedName;
    return ++m_depth <= maximumDepth;
}

bool RequestParser::endElement(const QString&, const QString&, const QString&)
{
    takeText();
    m_element.clear();
    --m_depth;
    return true;
}

bool RequestParser::characters(const QString& text)
{
    m_text += text;
    return true;
}

bool RequestParser::startDTD(const QString&, const QString&, const QString&)
{
    return false;
}

bool RequestParser::resolveEntity(const QString&, const QString&, QXmlInputSource*& source)
{
    source = nullptr;
    return false;
}

void RequestParser::takeText()
{
    const QString text = m_text;
    m_text.clear();
    const QString name = m_element.toUpper();
    if (text.isEmpty() || name.isEmpty() || name == QLatin1String("REQUEST"))
        return;
    if (name == QLatin1String("TYPE")) {
        m_request->type = text;
    } else if (name == QLatin1String("ORDER")) {
        m_request->order = text.toUpper();
    } else {
        m_request->fieldNames.append(m_element);
        m_request->fieldValues.append(text);
    }
}

} // namespace fms
