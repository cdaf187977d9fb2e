#include "qtService/management/KrvSimilarityWrapper.h"

#include "helpers/common/ByteScrambling.h"
#include "qtService/app/core/PathCodec.h"
#include "qtService/database/KrvFontRepository.h"
#include "qtService/management/FeaturesFolder.h"

#include <QFile>
#include <QThread>

namespace {

constexpr int startTimeout = 30000;
constexpr qint64 mostOutput = 64 * 1024 * 1024; // of a catalogue of millions
constexpr int mostComplaint = 512;

QString yesNo(bool exists)
{
    return exists ? QStringLiteral("exists") : QStringLiteral("does not exist");
}

QString commandLine(const QString& program, const QStringList& arguments)
{
    return QStringLiteral("\"%1\" %2").arg(program, arguments.join(QLatin1Char(' ')));
}

QString encoded(const QString& path)
{
    return QString::fromLatin1(krv::encodePath(path));
}

// False when a line is no "id:deviance".
bool parseMatches(const QByteArray& output, KrvSimilarityWrapper::Result* result)
{
    const auto unsealed = kerval::helpers::unseal({output.constData(), std::size_t(output.size())});
    if (!unsealed)
        return false;
    const QStringList lines =
        QString::fromUtf8(unsealed->data(), int(unsealed->size())).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList parts = line.trimmed().split(QLatin1Char(':'));
        bool hasId = false;
        bool hasDeviance = false;
        const int id = parts.value(0).toInt(&hasId);
        const double deviance = parts.value(1).toDouble(&hasDeviance);
        if (parts.size() != 2 || !hasId || !hasDeviance)
            return false;
        result->matches.append({id, deviance});
    }
    return true;
}

} // namespace

KrvSimilarityWrapper::KrvSimilarityWrapper(const QString& extractFeaturesApp, const QString& findSimilarApp,
                                           const QString& featuresFolder, QSharedPointer<KrvFontRepository> repository,
                                           const QString& databaseName, int databaseType, const QString& databaseUser,
                                           const QString& databasePassword)
    : m_extractFeaturesApp(extractFeaturesApp)
    , m_findSimilarApp(findSimilarApp)
    , m_databaseName(databaseName)
    , m_databaseUser(databaseUser)
    , m_databasePassword(databasePassword)
    , m_databaseType(databaseType)
    , m_repository(std::move(repository))
    , m_features(new FeaturesFolder(featuresFolder))
{
    initialise();
    qDebug("M_3_ \"%s\" %s, \"%s\" %s, \"%s\" %s", qUtf8Printable(m_extractFeaturesApp),
           qUtf8Printable(yesNo(QFile::exists(m_extractFeaturesApp))), qUtf8Printable(m_findSimilarApp),
           qUtf8Printable(yesNo(QFile::exists(m_findSimilarApp))), qUtf8Printable(featuresFolder),
           qUtf8Printable(yesNo(QFile::exists(featuresFolder))));
}

KrvSimilarityWrapper::KrvSimilarityWrapper(const KrvSimilarityWrapper& other)
    : QObject()
    , m_extractFeaturesApp(other.m_extractFeaturesApp)
    , m_findSimilarApp(other.m_findSimilarApp)
    , m_databaseName(other.m_databaseName)
    , m_databaseUser(other.m_databaseUser)
    , m_databasePassword(other.m_databasePassword)
    , m_databaseType(other.m_databaseType)
    , m_repository(other.m_repository)
    , m_features(other.m_features)
    , m_extractionLimit(other.m_extractionLimit)
    , m_searchLimit(other.m_searchLimit)
{
    initialise();
}

KrvSimilarityWrapper::~KrvSimilarityWrapper()
{
    const bool wasExtracting = mode() == Extracting;
    dropProcess();
    if (wasExtracting)
        m_features->endExtraction();
}

void KrvSimilarityWrapper::initialise()
{
    qRegisterMetaType<KrvSimilarityWrapper::Request>("KrvSimilarityWrapper::Request");
    qRegisterMetaType<KrvSimilarityWrapper::Result>("KrvSimilarityWrapper::Result");
    qRegisterMetaType<QProcess::ExitStatus>("QProcess::ExitStatus");
    m_watchdog.setSingleShot(true);
    connect(&m_watchdog, &QTimer::timeout, this, [this] {
        qWarning("E_0_ A similarity program does not end and is killed");
        if (m_process)
            m_process->kill();
    });
    connect(
        m_features.data(), &FeaturesFolder::extractionEnded, this,
        [this] {
            if (mode() == Waiting)
                startNext();
        },
        Qt::QueuedConnection);
}

int KrvSimilarityWrapper::requestSimilar(int fontId, const QString& characters, int limit, const QString& inIds,
                                         const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("similar"));
}

int KrvSimilarityWrapper::requestHarmonySameFamily(int fontId, const QString& characters, int limit,
                                                   const QString& inIds, const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("harsfam"));
}

int KrvSimilarityWrapper::requestHarmonyContrast(int fontId, const QString& characters, int limit, const QString& inIds,
                                                 const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("harcont"));
}

int KrvSimilarityWrapper::requestHarmonyBody(int fontId, const QString& characters, int limit, const QString& inIds,
                                             const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("harbody"));
}

int KrvSimilarityWrapper::requestHarmonyHeadline(int fontId, const QString& characters, int limit, const QString& inIds,
                                                 const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("harhead"));
}

int KrvSimilarityWrapper::requestSmartChoiceAll(int fontId, const QString& characters, int limit, const QString& inIds,
                                                const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("smartall"));
}

int KrvSimilarityWrapper::requestSmartChoiceBody(int fontId, const QString& characters, int limit, const QString& inIds,
                                                 const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("smartbody"));
}

int KrvSimilarityWrapper::requestSmartChoiceHeadline(int fontId, const QString& characters, int limit,
                                                     const QString& inIds, const QVariant& criteria)
{
    return enqueue(fontId, characters, limit, inIds, criteria, QStringLiteral("smarthead"));
}

bool KrvSimilarityWrapper::clearFeatures()
{
    return m_features->clear();
}

void KrvSimilarityWrapper::setTimeLimits(int extractionMilliseconds, int searchMilliseconds)
{
    m_extractionLimit = extractionMilliseconds;
    m_searchLimit = searchMilliseconds;
}

int KrvSimilarityWrapper::catalogueSize() const
{
    return m_repository ? m_repository->fontCount() : 0;
}

int KrvSimilarityWrapper::enqueue(int fontId, const QString& characters, int limit, const QString& inIds,
                                  const QVariant& criteria, const QString& mode)
{
    Request request;
    request.fontId = fontId;
    request.limit = limit;
    request.characters = characters;
    request.inIds = QString(inIds).remove(QLatin1Char(' '));
    request.criteria = criteria;
    request.mode = mode;
    bool isOnly = false;
    {
        QWriteLocker locker(&m_lock);
        m_queue.append(request);
        isOnly = m_queue.size() == 1;
    }
    // An answer may be ready at once, and never comes before the caller has its return value.
    if (isOnly)
        QMetaObject::invokeMethod(this, &KrvSimilarityWrapper::startNext, Qt::QueuedConnection);
    return Success;
}

int KrvSimilarityWrapper::mode() const
{
    QReadLocker locker(&m_lock);
    return m_mode;
}

void KrvSimilarityWrapper::setMode(int mode)
{
    QWriteLocker locker(&m_lock);
    m_mode = mode;
}

void KrvSimilarityWrapper::startNext()
{
    Request request;
    {
        QWriteLocker locker(&m_lock);
        m_mode = Idle;
        if (m_queue.isEmpty())
            return;
        request = m_queue.first();
    }
    if (!m_features->isReady()) {
        extract();
        return;
    }
    const int error = search(request);
    if (error != Success)
        answer(Result(), error);
}

void KrvSimilarityWrapper::extract()
{
    if (!QFile::exists(m_extractFeaturesApp)) {
        answer(Result(), ExtractionUnavailable);
        return;
    }
    if (!QFile::exists(m_findSimilarApp)) {
        answer(Result(), SearchFailed);
        return;
    }
    if (!m_features->create()) {
        answer(Result(), ExtractionUnavailable);
        return;
    }
    // Before the look at whether somebody else extracts: its end must find this one waiting.
    setMode(Waiting);
    if (!m_features->beginExtraction())
        return;
    setMode(Extracting);

    QStringList arguments = {QStringLiteral("--createfolder"),
                             QStringLiteral("-d"),
                             encoded(m_databaseName),
                             QStringLiteral("-f"),
                             encoded(m_features->path()),
                             QStringLiteral("-r"),
                             m_databaseType == 1 ? QStringLiteral("QSQLITE") : QStringLiteral("QMYSQL"),
                             QStringLiteral("-m"),
                             QStringLiteral("zerocharacter")};
    if (!m_databaseUser.isEmpty())
        arguments << QStringLiteral("-u") << m_databaseUser;
    // Before the password, which has no place in a log.
    qDebug("M_3_ Start extracting features: %s", qUtf8Printable(commandLine(m_extractFeaturesApp, arguments)));
    if (!m_databasePassword.isEmpty())
        arguments << QStringLiteral("-p") << m_databasePassword;
    startProcess(m_extractFeaturesApp, arguments, m_extractionLimit);
}

int KrvSimilarityWrapper::search(const Request& request)
{
    if (!m_features->isFilled())
        return FeaturesNotReady;
    if (!QFile::exists(m_findSimilarApp))
        return SearchFailed;
    if (mode() == Searching)
        return Busy;
    setMode(Searching);
    m_searchedGeneration = m_features->generation();

    QStringList arguments = {QStringLiteral("-f"), encoded(m_features->path()),
                             QStringLiteral("-t"), request.characters,
                             QStringLiteral("-i"), QString::number(request.fontId),
                             QStringLiteral("-l"), QString::number(request.limit),
                             QStringLiteral("-o"), QStringLiteral("{id}:{deviance}\\n"),
                             QStringLiteral("-m"), request.mode};
    if (!request.inIds.isEmpty())
        arguments << QStringLiteral("--stdininids");
    qDebug("M_3_ Find similar fonts: %s", qUtf8Printable(commandLine(m_findSimilarApp, arguments)));
    startProcess(m_findSimilarApp, arguments, m_searchLimit);
    if (!request.inIds.isEmpty())
        m_process->write(request.inIds.toUtf8() + '\n');
    m_process->closeWriteChannel();
    return Success;
}

void KrvSimilarityWrapper::startProcess(const QString& program, const QStringList& arguments, int timeLimit)
{
    dropProcess();
    m_process = new QProcess;
    m_complaint.clear();
    connect(m_process, &QProcess::readyReadStandardOutput, this, &KrvSimilarityWrapper::onOutput);
    connect(m_process, &QProcess::readyReadStandardError, this, &KrvSimilarityWrapper::onOutput);
    connect(m_process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &KrvSimilarityWrapper::onProcessFinished, Qt::QueuedConnection);
    m_elapsed.start();
    m_process->start(program, arguments, QIODevice::ReadWrite);
    if (!m_process->waitForStarted(startTimeout)) {
        qWarning("E_0_ Wait for started failed!!!!!!!!!! \"%s\": %s", qUtf8Printable(program),
                 qUtf8Printable(m_process->errorString()));
        // No end follows for a process that never began.
        QMetaObject::invokeMethod(this, &KrvSimilarityWrapper::onStartFailed, Qt::QueuedConnection);
        return;
    }
    m_watchdog.start(timeLimit);
}

void KrvSimilarityWrapper::onOutput()
{
    if (!m_process)
        return;
    m_complaint += m_process->readAllStandardError();
    m_complaint.truncate(mostComplaint);
    if (m_process->bytesAvailable() > mostOutput)
        m_process->kill();
}

void KrvSimilarityWrapper::dropProcess()
{
    m_watchdog.stop();
    if (!m_process)
        return;
    m_process->disconnect(this);
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished();
    }
    m_process->deleteLater();
    m_process = nullptr;
}

void KrvSimilarityWrapper::onStartFailed()
{
    if (mode() == Extracting)
        onExtractionEnded();
    else if (mode() == Searching)
        onSearchEnded(false, QByteArray());
}

void KrvSimilarityWrapper::onProcessFinished(int exitcode, QProcess::ExitStatus status)
{
    if (!m_process)
        return;
    const bool succeeded = status == QProcess::NormalExit && exitcode == 0;
    const QByteArray output = m_process->readAllStandardOutput();
    qDebug("M_3_ The program ended with %d after %lld ms %s", exitcode, m_elapsed.elapsed(),
           m_complaint.simplified().constData());
    if (mode() == Extracting)
        onExtractionEnded();
    else if (mode() == Searching)
        onSearchEnded(succeeded, output);
}

void KrvSimilarityWrapper::onExtractionEnded()
{
    dropProcess();
    setMode(Idle);
    m_features->endExtraction();
    Request request;
    {
        QReadLocker locker(&m_lock);
        request = m_queue.value(0);
    }
    // Whatever was cleared while it ran, this request takes what came out: with fonts being added all the time it would
    // never be answered otherwise.
    const int error = search(request);
    if (error != Success)
        answer(Result(), error);
}

void KrvSimilarityWrapper::onSearchEnded(bool succeeded, const QByteArray& output)
{
    dropProcess();
    Result result;
    if (succeeded && parseMatches(output, &result)) {
        if (m_repository) {
            const auto isGone = [this](const QPair<int, double>& match) {
                return !m_repository->containsFont(match.first);
            };
            result.matches.erase(std::remove_if(result.matches.begin(), result.matches.end(), isGone),
                                 result.matches.end());
        }
        answer(result, Success);
        return;
    }
    // The files may have been cleared or written anew under the program's hands, or it found them damaged and took them
    // away.
    if (!m_isRetry && (!m_features->isFilled() || m_features->generation() != m_searchedGeneration)) {
        m_isRetry = true;
        startNext();
        return;
    }
    answer(Result(), SearchFailed);
}

void KrvSimilarityWrapper::answer(const Result& result, int error)
{
    Request request;
    bool hasMore = false;
    {
        QWriteLocker locker(&m_lock);
        m_mode = Idle;
        m_isRetry = false;
        request = m_queue.takeFirst();
        hasMore = !m_queue.isEmpty();
    }
    if (hasMore)
        QMetaObject::invokeMethod(this, &KrvSimilarityWrapper::startNext, Qt::QueuedConnection);
    emit similarityDone(request, result, error);
}
