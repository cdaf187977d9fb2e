#include "fontlens/recognition/FontRecognizerClient.h"

#include <QBuffer>
#include <QFileInfo>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrlQuery>
#include <QUuid>

namespace FontRecognizer {

namespace {

const char kBoundary[] = "AaB03x";

template <typename Reply, typename... Arguments>
QSharedPointer<Reply> makeReply(Arguments... arguments)
{
    return QSharedPointer<Reply>(new Reply(arguments...), &QObject::deleteLater);
}

// A value's own percent signs would be taken for the start of an encoded byte, and a null one for a key without value.
void addItem(QUrlQuery& query, QLatin1String key, QString value)
{
    if (value.isNull())
        value = QLatin1String("");
    query.addQueryItem(key, value.replace(QLatin1Char('%'), QLatin1String("%25")));
}

template <typename Points>
QString pointsText(const Points& points)
{
    QStringList texts;
    for (const QPoint& point : points)
        texts.append(QStringLiteral("%1,%2").arg(point.x()).arg(point.y()));
    return texts.join(QLatin1Char(';'));
}

QString splittersText(const QList<QPolygon>& splitters)
{
    QStringList texts;
    for (const QPolygon& splitter : splitters)
        texts.append(pointsText(splitter));
    return texts.join(QLatin1Char('_'));
}

QByteArray pngOf(const QImage& image)
{
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png;
}

QByteArray uploadBody(const QImage& image, const QString& fileName)
{
    const QByteArray delimiter = QByteArrayLiteral("--") + kBoundary + "\r\n";
    const QHash<QByteArray, QByteArray> fields{{"action", "imgupload"}, {"MAX_FILE_SIZE", "100000"}, {"format", "xml"}};
    QByteArray body;
    for (auto field = fields.cbegin(); field != fields.cend(); ++field) {
        body +=
            delimiter + "Content-disposition: form-data; name=\"" + field.key() + "\"\r\n\r\n" + field.value() + "\r\n";
    }
    // A line break or quote in the name would end the header early.
    QString name = QFileInfo(fileName).completeBaseName();
    for (QChar& c : name) {
        if (c == QLatin1Char('"') || c < QLatin1Char(' '))
            c = QLatin1Char('_');
    }
    body += delimiter + "Content-disposition: form-data; name=\"uploadedfile\"; filename=\"" + name.toUtf8() +
            ".png\"\r\nContent-Type: image/png\r\n\r\n" + pngOf(image) + "\r\n";
    // The service wants the last line as it is, without the two hyphens that end other multipart bodies.
    return body + delimiter + "\r\n";
}

} // namespace

FontRecognizerClient::FontRecognizerClient(const RecognitionUrls& urls, QObject* parent)
    : QObject(parent)
    , m_urls(urls)
    , m_network(new QNetworkAccessManager(this))
{
    // A proxy of the user's network does not lead to this machine.
    const QString host = QUrl(m_urls.moduleScript).host();
    if (host == QLatin1String("localhost") || QHostAddress(host).isLoopback())
        m_network->setProxy(QNetworkProxy::NoProxy);
    connect(&m_imageIds, &QSignalMapper::mappedString, this, &FontRecognizerClient::onImageCreated);
}

FontRecognizerClient::~FontRecognizerClient() = default;

ImageReplyPtr FontRecognizerClient::uploadImage(const QImage& image, const QString& fileName)
{
    const QUrl url(m_urls.moduleScript);
    const QByteArray body = uploadBody(image, fileName);
    QNetworkRequest request(url);
    request.setRawHeader("Accept", "*/*");
    request.setRawHeader("Host", url.host().toUtf8());
    request.setRawHeader("User-Agent", "Kerval/1.0");
    request.setRawHeader("Content-Type", QByteArrayLiteral("multipart/form-data, boundary=") + kBoundary);
    request.setRawHeader("Content-Length", QByteArray::number(body.size()));
    request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    return startImageJob(m_network->post(request, body));
}

ImageReplyPtr FontRecognizerClient::downloadImage(const QUrl& url)
{
    QUrl script(m_urls.moduleScript);
    QUrlQuery query;
    addItem(query, QLatin1String("type"), QStringLiteral("1"));
    script.setQuery(query);

    QUrlQuery form;
    addItem(form, QLatin1String("action"), QStringLiteral("imgdownload"));
    // Encoded as a form's value, so that the address's own "&", "=" and "+" stay inside it.
    form.addQueryItem(QStringLiteral("url"), QString::fromLatin1(QUrl::toPercentEncoding(url.toString())));
    addItem(form, QLatin1String("format"), QStringLiteral("xml"));
    const QByteArray body = form.query(QUrl::FullyEncoded).toUtf8();

    QNetworkRequest request(script);
    // The service knows the form by this type.
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("text/html"));
    request.setHeader(QNetworkRequest::ContentLengthHeader, body.size());
    return startImageJob(m_network->post(request, body));
}

ImageReplyPtr FontRecognizerClient::selectLetter(const QString& imageId, const QList<QPoint>& points, int angle,
                                                 int threshold, const QList<QPolygon>& splitters)
{
    QUrlQuery query;
    addItem(query, QLatin1String("type"), QStringLiteral("1"));
    addItem(query, QLatin1String("action"), QStringLiteral("objat"));
    addItem(query, QLatin1String("imgid"), imageId);
    addItem(query, QLatin1String("points"), pointsText(points));
    addItem(query, QLatin1String("threshold"), QString::number(threshold));
    addItem(query, QLatin1String("angle"), QString::number(angle));
    addItem(query, QLatin1String("spltrs"), splittersText(splitters));
    return startImageJob(get(m_urls.moduleScript, query));
}

ImageReplyPtr FontRecognizerClient::renderPreview(int fontId, int size, const QString& text,
                                                  QNetworkRequest::Priority priority)
{
    QUrlQuery query;
    addItem(query, QLatin1String("type"), QStringLiteral("1"));
    addItem(query, QLatin1String("action"), QStringLiteral("render"));
    addItem(query, QLatin1String("id"), QString::number(fontId));
    addItem(query, QLatin1String("text"), text);
    addItem(query, QLatin1String("size"), QString::number(size));
    const auto reply = makeReply<ImageReply>();
    reply->setImageId(QString::number(fontId));
    reply->bind(get(m_urls.moduleScript, query, priority));
    return reply;
}

FontListReplyPtr FontRecognizerClient::findSimilarFonts(const QList<LetterImage>& letters)
{
    QStringList ids;
    for (const LetterImage& letter : letters)
        ids.append(QString(letter.first) + QLatin1Char(',') + letter.second);
    QUrlQuery query;
    addItem(query, QLatin1String("type"), QStringLiteral("1"));
    addItem(query, QLatin1String("version"), QStringLiteral("3"));
    addItem(query, QLatin1String("format"), QStringLiteral("xml2"));
    addItem(query, QLatin1String("imgids"), ids.join(QLatin1Char(';')));
    const auto reply = makeReply<FontListReply>();
    reply->bind(get(m_urls.similarityScript, query));
    return reply;
}

FontStoreUrlReplyPtr FontRecognizerClient::getFontStoreUrl(int fontId)
{
    QUrlQuery query;
    addItem(query, QLatin1String("id"), QString::number(fontId));
    addItem(query, QLatin1String("version"), QStringLiteral("3"));
    const auto reply = makeReply<FontStoreUrlReply>(fontId);
    reply->bind(get(m_urls.shopLinkScript, query));
    return reply;
}

QNetworkReply* FontRecognizerClient::getImage(const QString& imageId)
{
    QUrlQuery query;
    addItem(query, QLatin1String("type"), QStringLiteral("1"));
    addItem(query, QLatin1String("imgid"), imageId);
    addItem(query, QLatin1String("action"), QStringLiteral("getimg"));
    return get(m_urls.moduleScript, query);
}

QNetworkReply* FontRecognizerClient::get(const QString& url, const QUrlQuery& query, QNetworkRequest::Priority priority)
{
    QUrl target(url);
    target.setQuery(query);
    QNetworkRequest request(target);
    request.setPriority(priority);
    return m_network->get(request);
}

ImageReplyPtr FontRecognizerClient::startImageJob(QNetworkReply* request)
{
    const auto image = makeReply<ImageReply>();
    const auto imageId = makeReply<ImageIdReply>();
    const QString key = QUuid::createUuid().toString();
    m_imageJobs.insert(key, {imageId, image});
    m_imageIds.setMapping(imageId.data(), key);
    connect(imageId.data(), &ImageIdReply::finished, &m_imageIds, qOverload<>(&QSignalMapper::map));
    connect(image.data(), &QObject::destroyed, this, [this, key] { m_imageJobs.remove(key); });
    imageId->bind(request);
    return image;
}

void FontRecognizerClient::onImageCreated(const QString& imageIdReplyId)
{
    const ImageJob job = m_imageJobs.take(imageIdReplyId);
    const ImageReplyPtr image = job.image.toStrongRef();
    if (!job.imageId || !image)
        return;
    const ImageIdReply& created = *job.imageId;
    if (created.state() != FontRecognizerReplyBase::Finished || created.result() != FontRecognizerReplyBase::Success) {
        image->finish(created.result(), created.networkError());
        return;
    }
    image->setImageId(created.imageId());
    image->bind(getImage(created.imageId()));
}

} // namespace FontRecognizer
