#pragma once

#include "fontfile/KrvFontMetrics.h"
#include "fontfile/RenderFontPreviewCommand.h"

#include <QCache>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>

// Renders previews in the background and keeps the latest ones. What was asked for last is rendered first, because the
// last question comes from the rows in view; requests that scrolled away are dropped before they cost anything. Only as
// many commands run at once as leave the thread pool room for searches. Main thread.
class FontPreviewStore : public QObject
{
    Q_OBJECT

public:
    struct Request
    {
        int fontId = 0;
        QString fileName;
        int faceIndex = 0;
        int pixelSize = 0;
        QString text;
        bool ownScript = false; // the text may give way to one that the font has letters for
        KrvFontMetrics::MetricsCorrection correction;

        QString key() const;
    };

    // What became of a command that ended.
    struct Outcome
    {
        QList<int> fontIds; // the fonts whose preview is now in the store; empty when there is none
        bool fileExists = true;
    };

    explicit FontPreviewStore(QObject* parent = nullptr);
    ~FontPreviewStore() override;

    // True when the preview is there; a preview of no ink is a null image. Otherwise it is asked for.
    bool find(const Request& request, QImage* image);
    // Drops requests not yet running for any other font.
    void keepOnly(const QSet<int>& fontIds);
    // Forgets every preview and request.
    void clear();

    Outcome takeFinished(const QString& commandId);

signals:
    // The command ended; its receiver calls takeFinished().
    void commandEnded(const QString& commandId);

private:
    struct Waiting
    {
        Request request;
        QList<int> fontIds;
    };
    struct Running
    {
        RenderFontPreviewCommandPtr command;
        QList<int> fontIds;
        bool forgotten = false;
    };

    void startNext();

    QCache<QString, QImage> m_images;
    QList<QString> m_order; // keys of m_waiting, the newest last
    QHash<QString, Waiting> m_waiting;
    QHash<QString, Running> m_running;
};
