#pragma once

#include "fontfile/sheets/FontSampleJob.h"

#include <QFutureWatcher>
#include <QHash>
#include <QObject>

// Turns fonts of the catalogue into PDF documents on the thread pool. Belongs to one thread, which needs an event loop
// for pdfGenerated(). Destroying it cancels the running jobs and waits for them.
class FMSPdfGenerator : public QObject
{
    Q_OBJECT

public:
    enum Kind
    {
        FontListing = 0,
        SampleSheet = 1
    };
    enum Error
    {
        UnknownKind = 32,
        FileNotRemovable = 34
    };

    explicit FMSPdfGenerator(QObject* parent = nullptr);
    ~FMSPdfGenerator() override;

    // The job is returned at once; one that cannot be started (an unknown kind, an existing file that cannot be
    // replaced) is in state Cancelled.
    FontSampleJobPtr generate(const QList<int>& fontIdList, const QString& saveFileName, const QString& sampleText,
                              int kind);

    static FontSampleJobPtr generateFontListPdf(FontSampleJobPtr job);
    static FontSampleJobPtr generateFontSheetPdf(FontSampleJobPtr job);
    static QString tempFileName(); // of a file that does not exist

signals:
    void pdfGenerated(FontSampleJobPtr jobInfo);

private slots:
    void onGeneratePDFFinished();

private:
    using Watcher = QFutureWatcher<FontSampleJobPtr>;
    QHash<Watcher*, FontSampleJobPtr> m_running;
};
