#pragma once

#include "fontlens/recognition/FontRecognizerClient.h"
#include "fontlens/recognition/FontRecognizerLetterSelection.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QPolygon>
#include <QPolygonF>
#include <QSharedPointer>

namespace FontRecognizer {

// The identification of the font in one picture: the picture, the letters selected in it and what is being asked about
// them. Every operation sends one request and returns; its signal says how it ended, and on failure nothing of the
// session has changed but lastResult() and lastNetworkError(). Several requests may be under way at once. Destroying
// the session drops them. GUI thread.
class FontRecognizerSession : public QObject
{
    Q_OBJECT

public:
    explicit FontRecognizerSession(const FontRecognizerClientPtr& client, QObject* parent = nullptr);
    ~FontRecognizerSession() override;

    void setSourceImage(const QImage& image, const QString& fileName);
    // The service fetches it.
    void setSourceImage(const QUrl& url);
    // For the letters selected from now on; rounded to whole pixels.
    void setSplitters(const QList<QPolygonF>& splitters);
    void selectLetter(QPoint point, int angle, int threshold);
    // Makes the last letter anew from its points and this one. Without letters nothing happens.
    void extendLastSelectedLetter(QPoint point, int angle, int threshold);
    void discardLetter(int index);
    void findSimilarFonts();
    void renderPreview(int fontId, int size);
    void renderCustomPreview(int fontId, int size, const QString& text);
    void getFontStoreUrl(int fontId);
    // Drops everything under way; none of it is told.
    void dropRequests();

    int letterCount() const { return m_letters.size(); }
    // Null for an index out of range.
    FontRecognizerLetterSelectionPtr letter(int index) const;
    QList<FontRecognizerLetterSelectionPtr> letters() const { return m_letters; }
    // The characters of the letters that have one.
    QString previewText() const { return m_previewText; }
    QImage sourceImage() const { return m_sourceImage; }
    QString sourceImageId() const { return m_sourceImageId; }
    int lastResult() const { return m_lastResult; }
    int lastNetworkError() const { return m_lastNetworkError; }

signals:
    void setSourceImageFinished(bool success);
    void selectLetterFinished(bool success, FontRecognizer::FontRecognizerLetterSelectionPtr selectedLetter);
    void extendLastSelectedLetterFinished(bool success);
    void letterDiscarded(FontRecognizer::FontRecognizerLetterSelectionPtr selectedLetter);
    void findSimilarFontsFinished(bool success, QList<FontRecognizer::FontDataPtr> fontDataListPtr);
    void renderPreviewFinished(bool success, int fontId, QImage previewImage);
    void renderCustomPreviewFinished(bool success, int fontId, QImage previewImage);
    void getFontStoreUrlFinished(bool success, int fontId, QUrl url);

private slots:
    void onSourceImageSet();
    void onLetterSelected();
    void onSelectedLetterExtended();
    void onSimilarFontsFound();
    void onPreviewRendered();
    void onCustomPreviewRendered();
    void onFontStoreUrlRetrieved();
    void updatePreviewText();

private:
    using ReplyPtr = QSharedPointer<FontRecognizerReplyBase>;
    using Slot = void (FontRecognizerSession::*)();

    void follow(const ReplyPtr& reply, Slot slot);
    void askForLetter(const QList<QPoint>& points, int angle, int threshold, Slot slot);
    // Takes the reply that sent the signal out of the table; null when it is not there.
    template <typename Reply>
    QSharedPointer<Reply> takeSender();
    static bool hasSucceeded(const FontRecognizerReplyBase& reply);

    FontRecognizerClientPtr m_client;
    QString m_sourceImageId;
    QImage m_sourceImage;
    QList<QPolygon> m_splitters;
    QHash<QString, ReplyPtr> m_pending; // by the reply's address in decimal
    QList<FontRecognizerLetterSelectionPtr> m_letters;
    QString m_previewText;
    int m_lastResult = 0;
    int m_lastNetworkError = 0;
};

} // namespace FontRecognizer
