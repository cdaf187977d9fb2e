#include "fontlens/recognition/FontRecognizerReplyBase.h"

#include <QNetworkAccessManager>

namespace FontRecognizer {

FontRecognizerReplyBase::FontRecognizerReplyBase(qint64 longestAnswer)
    : m_longestAnswer(longestAnswer)
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(kPatienceMilliseconds);
    connect(&m_patience, &QTimer::timeout, this, [this] { giveUp(NetworkFailure, QNetworkReply::TimeoutError); });
}

FontRecognizerReplyBase::~FontRecognizerReplyBase()
{
    if (!m_networkReply)
        return;
    // The derived part, which would parse, is gone by now.
    m_networkReply->disconnect(this);
    if (m_networkReply->isRunning())
        m_networkReply->abort();
    m_networkReply->deleteLater();
}

void FontRecognizerReplyBase::setPatience(int withoutProgress, qint64 altogether)
{
    m_patience.setInterval(withoutProgress);
    m_longestWait = altogether;
}

void FontRecognizerReplyBase::bind(QNetworkReply* networkReply)
{
    m_networkReply = networkReply;
    connect(networkReply, &QNetworkReply::finished, this, &FontRecognizerReplyBase::onRequestFinished);
    connect(networkReply, &QNetworkReply::readyRead, this, &FontRecognizerReplyBase::onReadyRead);
    connect(networkReply, &QObject::destroyed, this, &FontRecognizerReplyBase::onRequestDestroyed);
    const auto restartPatience = [this] {
        if (m_patience.isActive())
            m_patience.start();
    };
    connect(networkReply, &QNetworkReply::uploadProgress, this, restartPatience);
    // The manager holds requests back while as many as it likes are under way.
    connect(networkReply->manager(), &QNetworkAccessManager::finished, this, restartPatience);
    m_patience.start();
    if (networkReply->isRunning())
        setState(Running);
}

void FontRecognizerReplyBase::abort()
{
    if (m_networkReply && m_networkReply->isRunning())
        m_networkReply->abort();
}

void FontRecognizerReplyBase::onReadyRead()
{
    if (!m_networkReply)
        return;
    // Counted after decompression, which the headers tell nothing about.
    if (!m_sinceFirstBytes.isValid())
        m_sinceFirstBytes.start();
    if (m_networkReply->bytesAvailable() > m_longestAnswer)
        giveUp(ParseFailure, QNetworkReply::NoError);
    else if (m_sinceFirstBytes.hasExpired(m_longestWait))
        giveUp(NetworkFailure, QNetworkReply::TimeoutError);
    else
        m_patience.start();
}

// By the client's end; a request that has finished is destroyed by nobody but this.
void FontRecognizerReplyBase::onRequestDestroyed()
{
    m_patience.stop();
    if (m_state != Running)
        return;
    m_networkError = QNetworkReply::OperationCanceledError;
    setState(Aborted);
}

void FontRecognizerReplyBase::giveUp(int result, int networkError)
{
    if (!m_networkReply || m_state == Finished || m_state == Aborted)
        return;
    m_networkReply->disconnect(this);
    m_networkReply->abort();
    finish(result, networkError);
}

void FontRecognizerReplyBase::onRequestFinished()
{
    if (!m_networkReply)
        return;
    m_patience.stop();
    const int error = m_networkReply->error();
    if (error == QNetworkReply::OperationCanceledError) {
        m_result = Success;
        m_networkError = error;
        setState(Aborted);
    } else if (error != QNetworkReply::NoError) {
        finish(NetworkFailure, error);
    } else {
        finish(parse(m_networkReply->readAll()) ? Success : ParseFailure, error);
    }
}

void FontRecognizerReplyBase::finish(int result, int networkError)
{
    m_patience.stop();
    m_result = result;
    m_networkError = networkError;
    setState(Finished);
    emit finished();
}

void FontRecognizerReplyBase::setState(State state)
{
    m_state = state;
    emit stateChanged(state);
}

} // namespace FontRecognizer
