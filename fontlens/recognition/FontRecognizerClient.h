#pragma once

#include "fontlens/recognition/FontListReply.h"
#include "fontlens/recognition/FontStoreUrlReply.h"
#include "fontlens/recognition/ImageIdReply.h"
#include "fontlens/recognition/ImageReply.h"
#include "fontlens/recognition/RecognitionUrls.h"

#include <QChar>
#include <QHash>
#include <QList>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QObject>
#include <QPair>
#include <QPoint>
#include <QPolygon>
#include <QSharedPointer>
#include <QSignalMapper>
#include <QWeakPointer>

class QUrlQuery;

namespace FontRecognizer {

// One HTTP request for each operation of the recognition service. Every operation returns at once, and the answer
// arrives through the reply's finished(). Failures are told by the reply's result alone. GUI thread.
//
// A picture comes in two steps: the service answers with an id, and the picture is fetched by it. Until then the reply
// stays idle; dropping it drops the job.
class FontRecognizerClient : public QObject
{
    Q_OBJECT

public:
    using LetterImage = QPair<QChar, QString>; // the character and the id of the cut-out letter

    explicit FontRecognizerClient(const RecognitionUrls& urls, QObject* parent = nullptr);
    // Running replies end as aborted.
    ~FontRecognizerClient() override;

    // The image goes as PNG, under the base name of fileName.
    ImageReplyPtr uploadImage(const QImage& image, const QString& fileName);
    // The service fetches the picture itself.
    ImageReplyPtr downloadImage(const QUrl& url);
    // Points in pixels of the picture; angle in whole degrees, as the view is turned; a smaller threshold is more
    // sensitive; splitters are lines that cut letters apart.
    ImageReplyPtr selectLetter(const QString& imageId, const QList<QPoint>& points, int angle, int threshold,
                               const QList<QPolygon>& splitters);
    // The reply's image id is the font's id in decimal. Size in pixels. A whole list of previews goes with normal
    // priority, for what the user waits for goes before it.
    ImageReplyPtr renderPreview(int fontId, int size, const QString& text,
                                QNetworkRequest::Priority priority = QNetworkRequest::HighPriority);
    FontListReplyPtr findSimilarFonts(const QList<LetterImage>& letters);
    FontStoreUrlReplyPtr getFontStoreUrl(int fontId);

private slots:
    void onImageCreated(const QString& imageIdReplyId);

private:
    struct ImageJob
    {
        ImageIdReplyPtr imageId;
        QWeakPointer<ImageReply> image;
    };

    ImageReplyPtr startImageJob(QNetworkReply* request);
    QNetworkReply* getImage(const QString& imageId);
    QNetworkReply* get(const QString& url, const QUrlQuery& query,
                       QNetworkRequest::Priority priority = QNetworkRequest::HighPriority);

    RecognitionUrls m_urls;
    QNetworkAccessManager* m_network;
    QSignalMapper m_imageIds;
    QHash<QString, ImageJob> m_imageJobs;
};

using FontRecognizerClientPtr = QSharedPointer<FontRecognizerClient>;

} // namespace FontRecognizer
