#include "fontfile/sheets/FMSPdfGenerator.h"

#include "fontfile/sheets/FontListPdf.h"
#include "fontfile/sheets/FontSheetPdf.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtConcurrentRun>

FMSPdfGenerator::FMSPdfGenerator(QObject* parent)
    : QObject(parent)
{
    qRegisterMetaType<FontSampleJobPtr>("FontSampleJobPtr");
}

FMSPdfGenerator::~FMSPdfGenerator()
{
    for (auto it = m_running.cbegin(); it != m_running.cend(); ++it)
        (*it)->cancelJob();
    for (auto it = m_running.cbegin(); it != m_running.cend(); ++it)
        it.key()->waitForFinished();
}

FontSampleJobPtr FMSPdfGenerator::generate(const QList<int>& fontIdList, const QString& saveFileName,
                                           const QString& sampleText, int kind)
{
    const auto job = FontSampleJobPtr(new FontSampleJob(saveFileName, sampleText, fontIdList));
    const auto refuse = [&job](int error) {
        job->setErrorCode(error);
        job->setState(FontSampleJob::Cancelled);
        return job;
    };
    if (QFile::exists(saveFileName) && !QFile::remove(saveFileName))
        return refuse(FileNotRemovable);
    if (kind != FontListing && kind != SampleSheet)
        return refuse(UnknownKind);
    auto* watcher = new Watcher(this);
    m_running.insert(watcher, job);
    connect(watcher, &Watcher::finished, this, &FMSPdfGenerator::onGeneratePDFFinished);
    watcher->setFuture(QtConcurrent::run(kind == FontListing ? &generateFontListPdf : &generateFontSheetPdf, job));
    return job;
}

void FMSPdfGenerator::onGeneratePDFFinished()
{
    auto* watcher = static_cast<Watcher*>(sender());
    const FontSampleJobPtr job = watcher->result();
    m_running.remove(watcher);
    watcher->deleteLater();
    emit pdfGenerated(job);
}

FontSampleJobPtr FMSPdfGenerator::generateFontListPdf(FontSampleJobPtr job)
{
    FontListPdf(job).run();
    return job;
}

FontSampleJobPtr FMSPdfGenerator::generateFontSheetPdf(FontSampleJobPtr job)
{
    FontSheetPdf(job).run();
    return job;
}

QString FMSPdfGenerator::tempFileName()
{
    QString name;
    int n = 0;
    do {
        name = QStringLiteral("%1/fms%2.tmp").arg(QDir::tempPath(), QString::number(n++));
    } while (QFile::exists(name));
    name = QFileInfo(name).absoluteFilePath();
    qDebug().noquote() << "M_2_ FMSPdfGenerator::tempFileName" << name;
    return name;
}
