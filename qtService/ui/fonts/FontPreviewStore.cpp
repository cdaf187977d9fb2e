#include "qtService/ui/fonts/FontPreviewStore.h"

#include <QThread>

namespace {

// Some 2,000 previews of an ordinary line.
constexpr int maximumCost = 24 * 1024 * 1024;
// More rows than any screen shows at once.
constexpr int maximumWaiting = 400;

int maximumRunning()
{
    return qMax(1, QThread::idealThreadCount() - 1);
}

} // namespace

QString FontPreviewStore::Request::key() const
{
    return QStringLiteral("%1;%2;%3;%4").arg(fileName, QString::number(faceIndex), text, QString::number(pixelSize));
}

FontPreviewStore::FontPreviewStore(QObject* parent)
    : QObject(parent)
    , m_images(maximumCost)
{
}

FontPreviewStore::~FontPreviewStore()
{
    for (const Running& running : qAsConst(m_running))
        running.command->disconnect(this);
}

bool FontPreviewStore::find(const Request& request, QImage* image)
{
    const QString key = request.key();
    if (const QImage* stored = m_images.object(key)) {
        *image = *stored;
        return true;
    }
    const auto running = m_running.find(key);
    if (running != m_running.end() && !running->forgotten) {
        if (!running->fontIds.contains(request.fontId))
            running->fontIds.append(request.fontId);
        return false;
    }
    Waiting& waiting = m_waiting[key];
    waiting.request = request;
    if (!waiting.fontIds.contains(request.fontId))
        waiting.fontIds.append(request.fontId);
    m_order.removeOne(key);
    m_order.append(key);
    if (m_order.size() > maximumWaiting)
        m_waiting.remove(m_order.takeFirst());
    startNext();
    return false;
}

void FontPreviewStore::keepOnly(const QSet<int>& fontIds)
{
    QList<QString> kept;
    for (const QString& key : qAsConst(m_order)) {
        const QList<int> ids = m_waiting.value(key).fontIds;
        const bool wanted = std::any_of(ids.cbegin(), ids.cend(), [&](int id) { return fontIds.contains(id); });
        if (wanted)
            kept.append(key);
        else
            m_waiting.remove(key);
    }
    m_order = kept;
}

void FontPreviewStore::clear()
{
    m_images.clear();
    m_order.clear();
    m_waiting.clear();
    for (Running& running : m_running)
        running.forgotten = true;
}

void FontPreviewStore::startNext()
{
    while (!m_order.isEmpty() && m_running.size() < maximumRunning()) {
        const QString key = m_order.takeLast();
        const Waiting waiting = m_waiting.take(key);
        // A forgotten run of the same preview still holds the key; its end starts this one.
        if (m_running.contains(key)) {
            m_running[key].forgotten = false;
            m_running[key].fontIds = waiting.fontIds;
            continue;
        }
        const Request& request = waiting.request;
        const auto command = RenderFontPreviewCommandPtr::create(request.fileName, request.faceIndex, request.pixelSize,
                                                                 request.text, request.correction, QMargins());
        command->setOwnScript(request.ownScript);
        m_running.insert(key, {command, waiting.fontIds, false});
        connect(command.data(), &AbstractAsynchronousCommand::stateChanged, this,
                [this, key](AbstractAsynchronousCommand::State state) {
                    if (state != AbstractAsynchronousCommand::Running)
                        emit commandEnded(key);
                });
        command->start();
    }
}

FontPreviewStore::Outcome FontPreviewStore::takeFinished(const QString& commandId)
{
    Outcome outcome;
    const auto found = m_running.find(commandId);
    if (found == m_running.end())
        return outcome;
    const Running running = *found;
    m_running.erase(found);
    if (!running.forgotten && running.command->state() == AbstractAsynchronousCommand::Finished) {
        outcome.fileExists = running.command->fileExists();
        auto* image = new QImage(running.command->image());
        // An empty preview costs something too, or the cache would hold any number of them.
        if (m_images.insert(commandId, image, int(qMax<qint64>(64, image->sizeInBytes()))))
            outcome.fontIds = running.fontIds;
    }
    startNext();
    return outcome;
}
