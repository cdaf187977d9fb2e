#include "qtService/management/FontProcessingJob.h"

#include "helpers/common/FaceReport.h"
#include "qtService/app/core/PathCodec.h"

#include <QDir>

#include <string_view>

namespace {

constexpr int startTimeout = 30000;

std::string_view view(const QByteArray& bytes)
{
    return {bytes.constData(), std::size_t(bytes.size())};
}

QString text(const std::string& utf8)
{
    return QString::fromUtf8(utf8.data(), int(utf8.size()));
}

} // namespace

FontProcessingJob::FontProcessingJob(const QString& adderExecutable, const QString& fileName, int faceIndex,
                                     int timeoutSeconds, int maxRetries)
    : m_adderExecutable(QDir::toNativeSeparators(adderExecutable))
    , m_options(QStringLiteral("--useReducedCharset"))
    , m_fileName(fileName)
    , m_faceIndex(faceIndex)
    , m_timeoutSeconds(timeoutSeconds)
    , m_maxRetries(maxRetries)
{
    qRegisterMetaType<QProcess::ExitStatus>("QProcess::ExitStatus");
}

FontProcessingJob::~FontProcessingJob()
{
    if (m_process) {
        m_process->disconnect(this);
        if (m_process->state() != QProcess::NotRunning) {
            m_process->kill();
            m_process->waitForFinished();
        }
    }
}

void FontProcessingJob::start()
{
    if (state() != Idle && error() == NoError)
        return;

    // The process before this one may be the sender of the signal that led here. The last one goes with the job as its
    // child: what a thread that ends puts off while it deletes what was put off, it never does.
    QSharedPointer<QProcess> process(new QProcess(this), &QObject::deleteLater);
    {
        QWriteLocker locker(&m_lock);
        m_killed = false;
        m_process = process;
    }
    connect(process.data(), QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this,
            &FontProcessingJob::onProcessFinished);
    process->start(m_adderExecutable,
                   {QStringLiteral("-i"), QString::fromLatin1(krv::encodePath(m_fileName)), QStringLiteral("-d"),
                    QStringLiteral("stdout"), m_options, QStringLiteral("-g"), QString::number(m_faceIndex)},
                   QIODevice::ReadWrite);
    if (!process->waitForStarted(startTimeout)) {
        QMetaObject::invokeMethod(this, &FontProcessingJob::onStartFailed, Qt::QueuedConnection);
    } else if (m_timeoutSeconds > 0) {
        m_timer.reset(new QTimer);
        m_timer->setSingleShot(true);
        connect(m_timer.data(), &QTimer::timeout, this, &FontProcessingJob::onCompletionTimeout);
        m_timer->start(m_timeoutSeconds * 1000);
    }
    setState(Running);
}

void FontProcessingJob::operator()() {}

void FontProcessingJob::waitForFinished()
{
    while (state() == Running) {
        const QSharedPointer<QProcess> process = m_process;
        if (process->state() == QProcess::NotRunning) {
            onStartFailed();
            continue;
        }
        const int remaining = m_timer ? m_timer->remainingTime() : -1;
        if (!process->waitForFinished(remaining) && process->state() != QProcess::NotRunning) {
            onCompletionTimeout();
            process->waitForFinished(-1);
        }
    }
}

void FontProcessingJob::onCompletionTimeout()
{
    QSharedPointer<QProcess> process;
    {
        QWriteLocker locker(&m_lock);
        m_killed = true;
        process = m_process;
    }
    process->kill();
}

void FontProcessingJob::onStartFailed()
{
    if (state() != Running || m_process->state() != QProcess::NotRunning)
        return;
    qWarning("E_0_ \"%s\" could not be started: %s", qUtf8Printable(m_adderExecutable),
             qUtf8Printable(m_process->errorString()));
    retryOrFail(Crashed);
}

void FontProcessingJob::onProcessFinished(int exitCode, QProcess::ExitStatus status)
{
    if (m_timer)
        m_timer->stop();
    const QByteArray output = m_process->readAllStandardOutput();
    const auto payload = kerval::helpers::openEnvelope(view(output));
    bool killed = false;
    {
        QWriteLocker locker(&m_lock);
        m_exitCode = exitCode;
        killed = m_killed;
    }

    if (status != QProcess::NormalExit || exitCode != 0) {
        const QByteArray reason = m_process->readAllStandardError().trimmed();
        qWarning("E_1_ FontProcessingJob Failed on \"%s:%d\" %s", qUtf8Printable(m_fileName), m_faceIndex,
                 reason.constData());
        retryOrFail(killed ? TimedOut : status == QProcess::CrashExit ? Crashed : NonZeroExit);
        return;
    }
    const auto report = payload ? kerval::helpers::parseFaceReport(*payload) : std::nullopt;
    if (!report) {
        qWarning("E_1_ FontProcessingJob Failed on \"%s:%d\"", qUtf8Printable(m_fileName), m_faceIndex);
        fail(MalformedOutput);
        return;
    }

    QHash<QString, QString> info;
    for (const auto& [key, value] : report->information)
        info.insert(text(key), text(value));
    // A report cannot carry every name that a file system takes; it then holds the nearest one that it can.
    const QString carried = text(kerval::helpers::harmlessValue(view(m_fileName.toUtf8())));
    for (const QString& key : {QStringLiteral("file_name"), QStringLiteral("original_file_name")}) {
        if (info.value(key) == carried)
            info.insert(key, m_fileName);
    }
    QHash<int, QList<float>> features;
    for (const auto& [code, vector] : report->features) {
        QList<float>& values = features[code];
        values.reserve(int(vector.size()));
        for (const float value : vector)
            values.append(value);
    }
    {
        QWriteLocker locker(&m_lock);
        m_error = NoError;
        m_fontInfo = info;
        m_features = features;
    }
    setState(Finished);
}

void FontProcessingJob::retryOrFail(int error)
{
    if (m_retryCount >= m_maxRetries || state() == Cancelled) {
        fail(error);
        return;
    }
    ++m_retryCount;
    {
        QWriteLocker locker(&m_lock);
        m_error = error;
    }
    start();
}

void FontProcessingJob::fail(int error)
{
    {
        QWriteLocker locker(&m_lock);
        m_error = error;
    }
    setState(Failed);
}

int FontProcessingJob::error() const
{
    QReadLocker locker(&m_lock);
    return m_error;
}

int FontProcessingJob::exitCode() const
{
    QReadLocker locker(&m_lock);
    return m_exitCode;
}

QHash<QString, QString> FontProcessingJob::fontInfo() const
{
    QReadLocker locker(&m_lock);
    return m_fontInfo;
}

QHash<int, QList<float>> FontProcessingJob::features() const
{
    QReadLocker locker(&m_lock);
    return m_features;
}
