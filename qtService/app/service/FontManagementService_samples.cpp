#include "qtService/app/service/FontManagementService.h"

#include "fontfile/sheets/FMSPdfGenerator.h"
#include "qtService/database/KrvFontRepository.h"

#include <QThread>

FontSampleJobPtr FontManagementService::createFontSampleForAllFonts(QString saveFileName, QString sampleText)
{
    const QSharedPointer<KrvFontRepository> fonts = repository();
    return fonts ? createFontSample(fonts->fontIdList(), saveFileName, sampleText, 0) : FontSampleJobPtr();
}

FontSampleJobPtr FontManagementService::createFontSampleForFonts(QList<int> fontIdList, QString saveFileName,
                                                                 QString sampleText)
{
    return createFontSample(fontIdList, saveFileName, sampleText, 0);
}

FontSampleJobPtr FontManagementService::createFontSampleSheetFotFonts(QList<int> fontIdList, QString saveFileName,
                                                                      QString sampleText)
{
    return createFontSample(fontIdList, saveFileName, sampleText, 1);
}

FontSampleJobPtr FontManagementService::createFontSample(const QList<int>& ids, const QString& saveFileName,
                                                         const QString& sampleText, int kind)
{
    FontSampleJobPtr job;
    const QString text = sampleText.isEmpty() ? QStringLiteral("The quick brown fox jumps over lazy dog.") : sampleText;
    const auto generate = [&] {
        if (!m_pdfGenerator)
            m_pdfGenerator = new FMSPdfGenerator(this);
        job = m_pdfGenerator->generate(ids, saveFileName, text, kind);
    };
    // The generator watches its jobs in this service's thread.
    if (QThread::currentThread() == thread())
        generate();
    else
        QMetaObject::invokeMethod(this, generate, Qt::BlockingQueuedConnection);
    return job;
}
