#include "tests/fontlens/FakeRecognition.h"

using Server = ScriptedRecognitionServer;

namespace {

QImage filled(QSize size, const QColor& color)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QUrlQuery queryOf(const Server::Request& request)
{
    const QByteArray target = request.target();
    return QUrlQuery(QString::fromUtf8(target.mid(target.indexOf('?') + 1)));
}

} // namespace

FakeRecognition::FakeRecognition()
{
    m_server.setScript([this](const Server::Request& request) {
        const auto special = m_answers.constFind(operationOf(request));
        return special != m_answers.constEnd() ? *special : reply(request);
    });
}

void FakeRecognition::answer(const QByteArray& operation, const Server::Answer& answer)
{
    m_answers.insert(operation, answer);
}

void FakeRecognition::restore(const QByteArray& operation)
{
    m_answers.remove(operation);
}

QList<QUrlQuery> FakeRecognition::queries(const QByteArray& operation) const
{
    QList<QUrlQuery> result;
    for (const Server::Request& request : m_server.requests()) {
        if (operationOf(request) == operation)
            result.append(queryOf(request));
    }
    return result;
}

Server::Answer FakeRecognition::brokenPage()
{
    return Server::page("<html>out of order</html>");
}

QColor FakeRecognition::previewColor(int fontId)
{
    return QColor::fromHsv(fontId * 40 % 360, 255, 200);
}

QByteArray FakeRecognition::operationOf(const Server::Request& request)
{
    const QByteArray path = request.target().split('?').first();
    if (path.endsWith("ocrsim.php"))
        return "ocrsim";
    if (path.endsWith("GetBuyFontLinks.php"))
        return "GetBuyFontLinks";
    if (request.body.contains("imgupload"))
        return "imgupload";
    if (request.body.contains("imgdownload"))
        return "imgdownload";
    return queryOf(request).queryItemValue(QStringLiteral("action")).toUtf8();
}

Server::Answer FakeRecognition::reply(const Server::Request& request)
{
    const QByteArray operation = operationOf(request);
    const QUrlQuery query = queryOf(request);
    if (operation == "imgupload" || operation == "imgdownload")
        return Server::page("a0;picture");
    if (operation == "objat")
        return Server::page("b" + QByteArray::number(++m_letters));
    if (operation == "getimg") {
        const QString id = query.queryItemValue(QStringLiteral("imgid"));
        if (id == QLatin1String("a0"))
            return Server::png(filled(pictureSize(), Qt::white));
        return Server::png(filled(QSize(20 + 10 * id.mid(1).toInt(), 60), Qt::gray));
    }
    if (operation == "render")
        return Server::png(filled(QSize(200, query.queryItemValue(QStringLiteral("size")).toInt()),
                                  previewColor(query.queryItemValue(QStringLiteral("id")).toInt())));
    if (operation == "ocrsim")
        return Server::page("<fonts><F>7</F><FN><![CDATA[Gamma]]></FN><S>Bold</S><FO>Third</FO><D>0.7</D>"
                            "<F>2</F><FN>Alpha</FN><S>Regular</S><FO>First</FO><D>0.2</D>"
                            "<F>5</F><FN>Beta</FN><S>Italic</S><FO>Second</FO><D>0.5</D></fonts>",
                            "text/xml");
    return Server::page("<a><buyurl><![CDATA[http://shop.example/font/" +
                        query.queryItemValue(QStringLiteral("id")).toUtf8() + "]]></buyurl></a>");
}
