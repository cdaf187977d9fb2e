#pragma once

#include "rest/http/FMSRequest.h"

#include <QXmlDefaultHandler>

namespace fms {

// Fills a request from the XML form: a REQUEST element with TYPE, ORDER and any other named elements, in any order; a
// second TYPE replaces the first. Text outside a named element is ignored.
//
// Hostile documents end the parse: a document type (so nothing can define entities, let alone fetch them) and nesting
// beyond a few levels (the framework's reader recurses for each).
class RequestParser : public QXmlDefaultHandler
{
public:
    explicit RequestParser(FMSRequest* request);

    // False when the text is no well-formed document of this kind; the request must then not be used.
    static bool parse(const QString& text, FMSRequest& request);

    bool startElement(const QString& namespaceUri, const QString& localName, const QString& qualifiedName,
                      const QXmlAttributes& attributes) override;
    bool endElement(const QString& namespaceUri, const QString& localName, const QString& qualifiedName) override;
    bool characters(const QString& text) override;
    bool startDTD(const QString& name, const QString& publicId, const QString& systemId) override;
    bool resolveEntity(const QString& publicId, const QString& systemId, QXmlInputSource*& source) override;

private:
    void takeText();

    QString m_element;
    FMSRequest* m_request;
    QString m_text; // readers may report one text in several pieces
    int m_depth = 0;
};

} // namespace fms
