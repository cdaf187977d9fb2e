#pragma once

#include "fontlens/recognizer/AddressPermits.h"
#include "fontlens/recognizer/PictureDecoder.h"
#include "fontlens/recognizer/PictureDownload.h"
#include "fontlens/recognizer/PictureStore.h"
#include "fontlens/recognizer/Recognizer.h"

#include <QObject>
#include <QSharedPointer>
#include <QTimer>

#include <atomic>
#include <memory>

class FontManagementService;

namespace kerval::recognizer {

class CatalogueFonts;
class FormData;
class JobQueue;

// The recognition service inside this program: identifies letters among the user's own fonts, without any network but
// for the pictures that are to be downloaded. Decoding, cutting, matching and drawing happen on threads of its own;
// everything else, the pictures included, belongs to the main thread.
class LocalRecognizer : public QObject, public Recognizer
{
    Q_OBJECT

public:
    struct Options
    {
        PictureStore::Clock clock;
        PictureStore::Limits pictures;
        DownloadEnvironment internet;
        QString cacheFolder; // what was measured of fonts; empty: nothing is kept

        static Options standard();
    };

    LocalRecognizer(const QSharedPointer<FontManagementService>& service, const Options& options);
    // Gives up what is being worked on; there are no replies any more.
    ~LocalRecognizer() override;

    std::shared_ptr<void> begin(const RecognizerRequest& request, const Reply& reply) override;
    void permitAddress(const QUrl& url) override;

private:
    using Work = std::shared_ptr<void>;
    using Operation = Work (LocalRecognizer::*)(const FormData&, const Reply&);

    Work beginModules(const RecognizerRequest& request, const Reply& reply);
    Work upload(const FormData& form, const Reply& reply);
    Work download(const FormData& form, const Reply& reply);
    Work cutLetter(const FormData& query, const Reply& reply);
    Work sendPicture(const FormData& query, const Reply& reply);
    Work renderPreview(const FormData& query, const Reply& reply);
    Work findFonts(const FormData& query, const Reply& reply);
    Work sendShopLink(const FormData& query, const Reply& reply);

    Work decode(const QByteArray& bytes, bool isUpload, const Reply& reply);
    void onDownloaded(PictureDownload* download, PictureDownload::Outcome outcome, const std::weak_ptr<Work>& work,
                      const Reply& reply);
    QString keepPicture(const StoredPicture& picture);
    Work enqueue(const std::function<std::function<void()>(const std::atomic<bool>&)>& work, const Reply& reply,
                 bool isWaitedFor);

    std::unique_ptr<JobQueue> m_queue;
    std::unique_ptr<CatalogueFonts> m_fonts;
    PictureStore m_pictures;
    AddressPermits m_permits;
    const DownloadEnvironment m_internet;
    QTimer m_cleaning;
    int m_downloads = 0;
};

} // namespace kerval::recognizer
