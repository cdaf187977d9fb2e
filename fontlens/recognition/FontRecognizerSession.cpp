#include "fontlens/recognition/FontRecognizerSession.h"

#include <QVariant>

namespace FontRecognizer {

namespace {

const char kPointList[] = "PointList";

QString keyOf(const QObject* reply)
{
    return QString::number(quintptr(reply));
}

} // namespace

FontRecognizerSession::FontRecognizerSession(const FontRecognizerClientPtr& client, QObject* parent)
    : QObject(parent)
    , m_client(client)
{
    qRegisterMetaType<FontRecognizerLetterSelectionPtr>("FontRecognizer::FontRecognizerLetterSelectionPtr");
    qRegisterMetaType<QList<FontDataPtr>>("QList<FontRecognizer::FontDataPtr>");
}

FontRecognizerSession::~FontRecognizerSession() = default;

void FontRecognizerSession::setSourceImage(const QImage& image, const QString& fileName)
{
    follow(m_client->uploadImage(image, fileName), &FontRecognizerSession::onSourceImageSet);
}

void FontRecognizerSession::setSourceImage(const QUrl& url)
{
    follow(m_client->downloadImage(url), &FontRecognizerSession::onSourceImageSet);
}

void FontRecognizerSession::setSplitters(const QList<QPolygonF>& splitters)
{
    m_splitters.clear();
    for (const QPolygonF& splitter : splitters)
        m_splitters.append(splitter.toPolygon());
}

void FontRecognizerSession::selectLetter(QPoint point, int angle, int threshold)
{
    askForLetter({point}, angle, threshold, &FontRecognizerSession::onLetterSelected);
}

void FontRecognizerSession::extendLastSelectedLetter(QPoint point, int angle, int threshold)
{
    if (m_letters.isEmpty())
        return;
    auto points = m_letters.last()->property(kPointList).value<QList<QPoint>>();
    points.append(point);
    askForLetter(points, angle, threshold, &FontRecognizerSession::onSelectedLetterExtended);
}

void FontRecognizerSession::askForLetter(const QList<QPoint>& points, int angle, int threshold, Slot slot)
{
    const ImageReplyPtr reply = m_client->selectLetter(m_sourceImageId, points, angle, threshold, m_splitters);
    reply->setProperty(kPointList, QVariant::fromValue(points));
    follow(reply, slot);
}

void FontRecognizerSession::discardLetter(int index)
{
    if (index < 0 || index >= m_letters.size())
        return;
    const FontRecognizerLetterSelectionPtr letter = m_letters.takeAt(index);
    updatePreviewText();
    emit letterDiscarded(letter);
}

void FontRecognizerSession::findSimilarFonts()
{
    QList<FontRecognizerClient::LetterImage> letters;
    for (const FontRecognizerLetterSelectionPtr& letter : qAsConst(m_letters))
        letters.append({letter->character(), letter->imageId()});
    follow(m_client->findSimilarFonts(letters), &FontRecognizerSession::onSimilarFontsFound);
    updatePreviewText();
}

void FontRecognizerSession::renderPreview(int fontId, int size)
{
    follow(m_client->renderPreview(fontId, size, m_previewText, QNetworkRequest::NormalPriority),
           &FontRecognizerSession::onPreviewRendered);
}

void FontRecognizerSession::renderCustomPreview(int fontId, int size, const QString& text)
{
    follow(m_client->renderPreview(fontId, size, text), &FontRecognizerSession::onCustomPreviewRendered);
}

void FontRecognizerSession::getFontStoreUrl(int fontId)
{
    follow(m_client->getFontStoreUrl(fontId), &FontRecognizerSession::onFontStoreUrlRetrieved);
}

void FontRecognizerSession::dropRequests()
{
    m_pending.clear();
}

FontRecognizerLetterSelectionPtr FontRecognizerSession::letter(int index) const
{
    return m_letters.value(index);
}

void FontRecognizerSession::follow(const ReplyPtr& reply, Slot slot)
{
    m_pending.insert(keyOf(reply.data()), reply);
    connect(reply.data(), &FontRecognizerReplyBase::finished, this, slot);
}

template <typename Reply>
QSharedPointer<Reply> FontRecognizerSession::takeSender()
{
    const QSharedPointer<Reply> reply = m_pending.take(keyOf(sender())).template objectCast<Reply>();
    if (reply) {
        m_lastResult = reply->result();
        m_lastNetworkError = reply->networkError();
    }
    return reply;
}

bool FontRecognizerSession::hasSucceeded(const FontRecognizerReplyBase& reply)
{
    return reply.state() == FontRecognizerReplyBase::Finished && reply.result() == FontRecognizerReplyBase::Success;
}

void FontRecognizerSession::onSourceImageSet()
{
    const auto reply = takeSender<ImageReply>();
    if (!reply)
        return;
    const bool success = hasSucceeded(*reply);
    if (success) {
        m_sourceImageId = reply->imageId();
        m_sourceImage = reply->image();
    }
    emit setSourceImageFinished(success);
}

void FontRecognizerSession::onLetterSelected()
{
    const auto reply = takeSender<ImageReply>();
    if (!reply)
        return;
    if (!hasSucceeded(*reply)) {
        emit selectLetterFinished(false, {});
        return;
    }
    // Created letters may be dropped from inside their own signal, too.
    const FontRecognizerLetterSelectionPtr letter(new FontRecognizerLetterSelection(reply->imageId(), reply->image()),
                                                  &QObject::deleteLater);
    letter->setProperty(kPointList, reply->property(kPointList));
    m_letters.append(letter);
    connect(letter.data(), &FontRecognizerLetterSelection::characterChanged, this,
            &FontRecognizerSession::updatePreviewText);
    emit selectLetterFinished(true, letter);
}

void FontRecognizerSession::onSelectedLetterExtended()
{
    const auto reply = takeSender<ImageReply>();
    if (!reply)
        return;
    // The letter may have been discarded meanwhile.
    const bool success = hasSucceeded(*reply) && !m_letters.isEmpty();
    if (success) {
        const FontRecognizerLetterSelectionPtr& letter = m_letters.last();
        letter->setImage(reply->image());
        letter->setImageId(reply->imageId());
        letter->setProperty(kPointList, reply->property(kPointList));
    }
    emit extendLastSelectedLetterFinished(success);
}

void FontRecognizerSession::onSimilarFontsFound()
{
    const auto reply = takeSender<FontListReply>();
    if (!reply)
        return;
    const bool success = hasSucceeded(*reply);
    emit findSimilarFontsFinished(success, success ? reply->fonts() : QList<FontDataPtr>());
}

void FontRecognizerSession::onPreviewRendered()
{
    const auto reply = takeSender<ImageReply>();
    if (!reply)
        return;
    const bool success = hasSucceeded(*reply);
    emit renderPreviewFinished(success, reply->imageId().toInt(), success ? reply->image() : QImage());
}

void FontRecognizerSession::onCustomPreviewRendered()
{
    const auto reply = takeSender<ImageReply>();
    if (!reply)
        return;
    const bool success = hasSucceeded(*reply);
    emit renderCustomPreviewFinished(success, success ? reply->imageId().toInt() : 0,
                                     success ? reply->image() : QImage());
}

void FontRecognizerSession::onFontStoreUrlRetrieved()
{
    const auto reply = takeSender<FontStoreUrlReply>();
    if (!reply)
        return;
    const bool success = hasSucceeded(*reply);
    emit getFontStoreUrlFinished(success, success ? reply->fontId() : 0, success ? reply->url() : QUrl());
}

void FontRecognizerSession::updatePreviewText()
{
    m_previewText.clear();
    for (const FontRecognizerLetterSelectionPtr& letter : qAsConst(m_letters)) {
        if (!letter->character().isNull())
            m_previewText.append(letter->character());
    }
}

} // namespace FontRecognizer
