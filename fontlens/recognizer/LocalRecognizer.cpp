#include "fontlens/recognizer/LocalRecognizer.h"

#include "fontfile/KrvFontPainter.h"
#include "fontlens/letters/LetterCutter.h"
#include "fontlens/recognizer/CatalogueFonts.h"
#include "fontlens/recognizer/FormData.h"
#include "fontlens/recognizer/JobQueue.h"
#include "fontlens/recognizer/RequestValues.h"
#include "qtService/app/core/SettingsFolders.h"
#include "qtService/database/StaticFont.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QUrl>

#include <limits>
#include <map>

namespace kerval::recognizer {

namespace {

constexpr int maximumJobs = 256; // a list of results asks for a hundred previews at once
constexpr int maximumDownloads = 8;
constexpr int maximumFonts = 100;
constexpr int maximumTextLength = 1000;
constexpr int maximumPreviewSize = 512;
constexpr qint64 maximumUpload = 20 * 1024 * 1024;
constexpr int cleaningMs = 60 * 1000;

std::shared_ptr<void> refuse(const Recognizer::Reply& reply, int status, const QString& text)
{
    reply(RecognizerAnswer::text(status, text));
    return nullptr;
}

QString gone(const QString& pictureId)
{
    return QStringLiteral("There is no picture %1; pictures are kept for an hour after their last use.").arg(pictureId);
}

std::optional<int> optionalNumber(const FormData& query, const QString& field, int least, int most, int otherwise)
{
    return query.contains(field) ? values::number(query.text(field), least, most) : otherwise;
}

// A click at the picture's very edge is rounded to the pixel behind it.
bool pullInside(QList<QPoint>& points, const QRect& rect)
{
    const QRect tolerant = rect.adjusted(-1, -1, 1, 1);
    for (QPoint& point : points) {
        if (!tolerant.contains(point))
            return false;
        point = QPoint(qBound(0, point.x(), rect.right()), qBound(0, point.y(), rect.bottom()));
    }
    return true;
}

RecognizerAnswer answerTo(const letters::LetterCut& cut)
{
    using letters::LetterCut;
    switch (cut.error) {
    case LetterCut::NoInk:
        return RecognizerAnswer::nothing(QStringLiteral("There is no letter at this place."));
    case LetterCut::NoLetter:
        return RecognizerAnswer::nothing(QStringLiteral("What is at this place is too large for a letter."));
    case LetterCut::NoPicture:
        return RecognizerAnswer::nothing(QStringLiteral("Nothing can be cut out of this picture."));
    default:
        return RecognizerAnswer::text(400, QStringLiteral("The points do not lie in the picture."));
    }
}

RecognizerAnswer answerTo(PictureDownload::Outcome outcome)
{
    switch (outcome) {
    case PictureDownload::BadAddress:
        return RecognizerAnswer::text(400, QStringLiteral("The address is no http or https address."));
    case PictureDownload::Refused:
        return RecognizerAnswer::text(
            403, QStringLiteral("The address leads to this machine or its own network, and nobody has typed it."));
    case PictureDownload::Unreachable:
        return RecognizerAnswer::text(502, QStringLiteral("The address cannot be reached."));
    case PictureDownload::TimedOut:
        return RecognizerAnswer::text(504, QStringLiteral("The address took too long to answer."));
    case PictureDownload::TooLarge:
        return RecognizerAnswer::nothing(QStringLiteral("The picture is larger than 20 MiB."));
    default:
        return RecognizerAnswer::nothing(QStringLiteral("There is no picture at this address."));
    }
}

} // namespace

LocalRecognizer::Options LocalRecognizer::Options::standard()
{
    QElapsedTimer timer;
    timer.start();
    Options options;
    options.clock = [timer] { return timer.elapsed(); };
    options.internet = DownloadEnvironment::standard();
    const QString folder = krv::userSettingsFolder();
    if (!folder.isEmpty())
        options.cacheFolder = folder + QStringLiteral("letters");
    return options;
}

LocalRecognizer::LocalRecognizer(const QSharedPointer<FontManagementService>& service, const Options& options)
    : m_queue(std::make_unique<JobQueue>(maximumJobs))
    , m_fonts(std::make_unique<CatalogueFonts>(service, m_queue.get(), options.cacheFolder))
    , m_pictures(options.clock, options.pictures)
    , m_permits(options.clock)
    , m_internet(options.internet)
{
    m_cleaning.setInterval(cleaningMs);
    connect(&m_cleaning, &QTimer::timeout, this, [this] {
        m_pictures.forgetExpired();
        if (m_pictures.isEmpty())
            m_cleaning.stop();
    });
}

LocalRecognizer::~LocalRecognizer()
{
    // Jobs use the fonts until the queue has ended.
    m_queue.reset();
    m_fonts.reset();
}

void LocalRecognizer::permitAddress(const QUrl& url)
{
    m_permits.add(url);
}

std::shared_ptr<void> LocalRecognizer::begin(const RecognizerRequest& request, const Reply& reply)
{
    const FormData query = FormData::fromUrlEncoded(request.query);
    if (query.contains(QStringLiteral("type")) && query.text(QStringLiteral("type")) != QLatin1String("1"))
        return refuse(reply, 400, QStringLiteral("Unknown type."));
    switch (request.script) {
    case RecognizerRequest::Script::Modules:
        return beginModules(request, reply);
    case RecognizerRequest::Script::Similarity:
        return findFonts(query, reply);
    case RecognizerRequest::Script::ShopLink:
        return sendShopLink(query, reply);
    }
    return refuse(reply, 404, QString());
}

std::shared_ptr<void> LocalRecognizer::beginModules(const RecognizerRequest& request, const Reply& reply)
{
    static const std::map<QString, Operation> posted{{QStringLiteral("imgupload"), &LocalRecognizer::upload},
                                                     {QStringLiteral("imgdownload"), &LocalRecognizer::download}};
    static const std::map<QString, Operation> asked{{QStringLiteral("objat"), &LocalRecognizer::cutLetter},
                                                    {QStringLiteral("getimg"), &LocalRecognizer::sendPicture},
                                                    {QStringLiteral("render"), &LocalRecognizer::renderPreview}};
    std::optional<FormData> fields;
    if (!request.isPost)
        fields = FormData::fromUrlEncoded(request.query);
    else if (FormData::isMultipart(request.contentType))
        fields = FormData::fromMultipart(request.contentType, request.body);
    else
        fields = FormData::fromUrlEncoded(request.body); // whatever type it claims
    if (!fields)
        return refuse(reply, 400, QStringLiteral("The form cannot be read."));
    const QString action = fields->text(QStringLiteral("action"));
    const auto& operations = request.isPost ? posted : asked;
    const auto operation = operations.find(action);
    if (operation == operations.end())
        return refuse(reply, 400, QStringLiteral("Unknown action \"%1\".").arg(action.left(40)));
    return (this->*operation->second)(*fields, reply);
}

std::shared_ptr<void> LocalRecognizer::upload(const FormData& form, const Reply& reply)
{
    const QByteArray file = form.bytes(QStringLiteral("uploadedfile"));
    if (file.isEmpty())
        return refuse(reply, 400, QStringLiteral("The field uploadedfile is missing or empty."));
    if (file.size() > maximumUpload)
        return refuse(reply, 413, QStringLiteral("The picture is larger than 20 MiB."));
    return decode(file, true, reply);
}

std::shared_ptr<void> LocalRecognizer::decode(const QByteArray& bytes, bool isUpload, const Reply& reply)
{
    const auto work = [this, bytes, isUpload, reply](const JobQueue::Cancelled&) -> JobQueue::Done {
        const PictureDecoder::Result result = PictureDecoder::decode(bytes);
        return [this, result, isUpload, reply] {
            if (result.problem == PictureDecoder::NoProblem)
                reply(RecognizerAnswer::pictureId(keepPicture(result.picture)));
            else if (result.problem == PictureDecoder::TooLarge)
                reply(RecognizerAnswer::nothing(QStringLiteral("The picture has too many pixels.")));
            else if (isUpload)
                reply(RecognizerAnswer::text(415, QStringLiteral("The file is no picture that can be read.")));
            else
                reply(answerTo(PictureDownload::NotThere));
        };
    };
    return enqueue(work, reply, true);
}

QString LocalRecognizer::keepPicture(const StoredPicture& picture)
{
    m_fonts->wake();
    if (!m_cleaning.isActive())
        m_cleaning.start();
    return m_pictures.addPicture(picture);
}

std::shared_ptr<void> LocalRecognizer::download(const FormData& form, const Reply& reply)
{
    const QUrl url(form.text(QStringLiteral("url")).trimmed(), QUrl::TolerantMode);
    if (url.isEmpty())
        return refuse(reply, 400, QStringLiteral("The field url is missing or empty."));
    // Used up by whatever comes of it.
    const bool isTyped = m_permits.take(url);
    if (m_downloads == maximumDownloads)
        return refuse(reply, 503, QStringLiteral("Too many downloads are running."));
    ++m_downloads;
    auto* download = new PictureDownload(url, isTyped, m_internet);
    download->setParent(this);
    // Deleted later, because it may be dropped from within its own signal; it goes with this object at the latest.
    const auto work = std::make_shared<Work>(nullptr, [self = QPointer<LocalRecognizer>(this), download](void*) {
        if (!self)
            return;
        --self->m_downloads;
        download->disconnect(self);
        download->deleteLater();
    });
    connect(download, &PictureDownload::finished, this,
            [this, download, reply, work = std::weak_ptr<Work>(work)](PictureDownload::Outcome outcome) {
                onDownloaded(download, outcome, work, reply);
            });
    download->start();
    return work;
}

void LocalRecognizer::onDownloaded(PictureDownload* download, PictureDownload::Outcome outcome,
                                   const std::weak_ptr<Work>& work, const Reply& reply)
{
    if (outcome != PictureDownload::Done) {
        reply(answerTo(outcome));
        return;
    }
    // The caller's handle now holds the decoding instead of the download.
    Work decoding = decode(download->bytes(), false, reply);
    if (const auto handle = work.lock())
        *handle = std::move(decoding);
}

std::shared_ptr<void> LocalRecognizer::sendPicture(const FormData& query, const Reply& reply)
{
    const QString id = query.text(QStringLiteral("imgid"));
    if (!values::isPictureId(id))
        return refuse(reply, 400, QStringLiteral("The field imgid is missing or no picture's id."));
    const auto picture = m_pictures.picture(id);
    if (!picture)
        return refuse(reply, 404, gone(id));
    reply(RecognizerAnswer::picture(picture->bytes, picture->contentType));
    return nullptr;
}

std::shared_ptr<void> LocalRecognizer::cutLetter(const FormData& query, const Reply& reply)
{
    const QString id = query.text(QStringLiteral("imgid"));
    if (!values::isPictureId(id))
        return refuse(reply, 400, QStringLiteral("The field imgid is missing or no picture's id."));
    auto points = values::points(query.text(QStringLiteral("points")));
    if (!points)
        return refuse(reply, 400, QStringLiteral("The field points is not \"x,y;x,y\" with 64 points at most."));
    const auto threshold =
        optionalNumber(query, QStringLiteral("threshold"), 0, 255, letters::LetterCutter::normalSensitivity);
    if (!threshold)
        return refuse(reply, 400, QStringLiteral("The field threshold is no number from 0 to 255."));
    const auto angle = optionalNumber(query, QStringLiteral("angle"), -36000, 36000, 0);
    if (!angle)
        return refuse(reply, 400, QStringLiteral("The field angle is no number of whole degrees."));
    const auto splitters = values::polygons(query.text(QStringLiteral("spltrs")));
    if (!splitters)
        return refuse(reply, 400, QStringLiteral("The field spltrs is not \"x,y;x,y_x,y;x,y\", or is too long."));
    const auto picture = m_pictures.picture(id);
    if (!picture)
        return refuse(reply, 404, gone(id));
    if (!pullInside(*points, picture->image.rect()))
        return refuse(reply, 400, QStringLiteral("The points do not lie in the picture."));

    const auto work = [=, image = picture->image](const JobQueue::Cancelled&) -> JobQueue::Done {
        const letters::LetterCut cut = letters::LetterCutter::cut(image, *points, *angle % 360, *threshold, *splitters);
        if (!cut.isValid() || cut.image.isNull())
            return [reply, answer = answerTo(cut)] { reply(answer); };
        StoredPicture letter = PictureDecoder::fromImage(cut.image);
        letter.scale = cut.scale;
        letter.click = cut.click;
        return [this, id, letter, reply] {
            const auto letterId = m_pictures.addLetter(id, letter);
            reply(letterId ? RecognizerAnswer::pictureId(*letterId) : RecognizerAnswer::text(404, gone(id)));
        };
    };
    return enqueue(work, reply, true);
}

std::shared_ptr<void> LocalRecognizer::renderPreview(const FormData& query, const Reply& reply)
{
    const auto id = values::number(query.text(QStringLiteral("id")), 0, std::numeric_limits<int>::max());
    if (!id)
        return refuse(reply, 400, QStringLiteral("The field id is no font's id."));
    const auto size = values::number(query.text(QStringLiteral("size")), 1, maximumPreviewSize);
    if (!size)
        return refuse(reply, 400, QStringLiteral("The field size is no number from 1 to %1.").arg(maximumPreviewSize));
    QString text = query.text(QStringLiteral("text")).simplified();
    if (text.isEmpty() || text.size() > maximumTextLength)
        return refuse(reply, 400, QStringLiteral("The field text is empty or too long."));
    if (!m_fonts->isOpen())
        return refuse(reply, 503, QStringLiteral("The library is not open."));
    const StaticFontPtr font = m_fonts->font(*id);
    if (!font)
        return refuse(reply, 404, QStringLiteral("There is no font %1.").arg(*id));

    PixelSizePreviewRequest preview;
    preview.text = text;
    preview.correction = KrvFontMetrics::MetricsCorrection::fromString(font->fullMetricsCorrection());
    const auto work = [preview, size, reply, file = font->fileName(),
                       face = font->faceIndex()](const JobQueue::Cancelled&) -> JobQueue::Done {
        QImage image;
        const bool isDrawn = KrvFontPainter::renderAtHeight(file, preview, *size, &image, face);
        const StoredPicture picture = isDrawn ? PictureDecoder::fromImage(image) : StoredPicture();
        return [picture, reply] {
            if (picture.bytes.isEmpty())
                reply(RecognizerAnswer::text(404, QStringLiteral("The font cannot draw this text.")));
            else
                reply(RecognizerAnswer::picture(picture.bytes, picture.contentType));
        };
    };
    return enqueue(work, reply, false);
}

std::shared_ptr<void> LocalRecognizer::findFonts(const FormData& query, const Reply& reply)
{
    const QString format = QStringLiteral("format");
    if (query.contains(format) && query.text(format) != QLatin1String("xml2"))
        return refuse(reply, 400, QStringLiteral("Unknown format."));
    int impossible = -1;
    const auto asked = values::letters(query.text(QStringLiteral("imgids")), &impossible);
    if (!asked)
        return refuse(reply, 400, QStringLiteral("The field imgids is not \"a,id;b,id\" with 128 letters at most."));
    if (impossible >= 0)
        return refuse(reply, 400,
                      QStringLiteral("Letter %1 has a character that no picture shows.").arg(impossible + 1));
    QVector<letters::CutLetter> letters;
    for (const values::Letter& letter : *asked) {
        const auto picture = m_pictures.picture(letter.pictureId);
        if (!picture)
            return refuse(reply, 404, gone(letter.pictureId));
        letters.append({letter.character, picture->image, picture->scale, picture->click});
    }
    if (!m_fonts->isOpen())
        return refuse(reply, 503, QStringLiteral("The library is not open."));
    m_fonts->wake();
    const auto work = [this, letters, reply](const JobQueue::Cancelled& cancelled) -> JobQueue::Done {
        const QByteArray xml = fontListXml(m_fonts->find(letters, maximumFonts, cancelled));
        return [xml, reply] { reply(RecognizerAnswer::xml(xml)); };
    };
    return enqueue(work, reply, true);
}

std::shared_ptr<void> LocalRecognizer::sendShopLink(const FormData& query, const Reply& reply)
{
    if (!values::number(query.text(QStringLiteral("id")), 0, std::numeric_limits<int>::max()))
        return refuse(reply, 400, QStringLiteral("The field id is no font's id."));
    // The user's own fonts: nobody sells them.
    reply(RecognizerAnswer::xml("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<links></links>\n"));
    return nullptr;
}

std::shared_ptr<void> LocalRecognizer::enqueue(const JobQueue::Work& work, const Reply& reply, bool isWaitedFor)
{
    const auto failed = [reply] { reply(RecognizerAnswer::text(500, QStringLiteral("Something failed inside."))); };
    auto job = m_queue->add(work, failed, isWaitedFor ? JobQueue::Waited : JobQueue::Background);
    if (!job)
        return refuse(reply, 503, QStringLiteral("Too much is being worked on; try again."));
    return job;
}

} // namespace kerval::recognizer
