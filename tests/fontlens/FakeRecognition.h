#pragma once

#include "tests/fontlens/recognition/ScriptedRecognitionServer.h"

#include <QUrlQuery>

// A recognition service that knows three fonts and cuts a grey letter, ten pixels wider each time, out of any picture.
// A test may put silence or another answer in the place of one operation.
class FakeRecognition
{
public:
    FakeRecognition();

    QString host() const { return m_server.host(); }
    // Operations: "imgupload", "imgdownload", "getimg", "objat", "render", "ocrsim", "GetBuyFontLinks".
    void answer(const QByteArray& operation, const ScriptedRecognitionServer::Answer& answer);
    void restore(const QByteArray& operation);
    // The queries of the requests for an operation, in their order.
    QList<QUrlQuery> queries(const QByteArray& operation) const;
    int count(const QByteArray& operation) const { return queries(operation).size(); }

    static ScriptedRecognitionServer::Answer brokenPage();
    static QSize pictureSize() { return QSize(400, 200); }
    static QColor previewColor(int fontId);

private:
    static QByteArray operationOf(const ScriptedRecognitionServer::Request& request);
    ScriptedRecognitionServer::Answer reply(const ScriptedRecognitionServer::Request& request);

    ScriptedRecognitionServer m_server;
    QHash<QByteArray, ScriptedRecognitionServer::Answer> m_answers;
    int m_letters = 0;
};
