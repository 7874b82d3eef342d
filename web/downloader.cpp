#include "web/downloader.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QPointer>
#include <QUrl>

#include <utility>

namespace {

//! Limits how many bytes are received before they are written. Set after the request has started: Qt accepts
//! no limit earlier.
constexpr int ReadBufferSize = 1024 * 1024;

QNetworkRequest requestFor(const QString& url)
{
    QNetworkRequest request(QUrl(url, QUrl::TolerantMode));
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    request.setAttribute(QNetworkRequest::FollowRedirectsAttribute, true);
    QT_WARNING_POP
    return request;
}

//! A nearly full disk accepts a part of the bytes without an error, and only the next write fails with the
//! reason. The file must be unbuffered, because a flush stops after the part.
bool writeAll(QFile& file, QByteArray bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 written = file.write(bytes);
        if (written <= 0)
            return false;
        bytes.remove(0, static_cast<int>(written));
    }
    return true;
}

} // namespace

CDownloader::CDownloader(QNetworkAccessManager* manager, QObject* parent)
    : QObject(parent), m_manager(manager)
{}

CDownloader::~CDownloader()
{
    if (!m_isInReplySignal) {
        delete m_reply;
    } else if (m_reply != nullptr) {
        disconnect(m_reply, nullptr, this, nullptr);
        m_reply->abort();
        m_reply->deleteLater();
    }
}

bool CDownloader::download(const QString& url, const QString& filePath, qint64 bytesTotal,
                           QString& errorString, bool resume)
{
    if (m_reply != nullptr) {
        errorString = QStringLiteral("download already exist: %1").arg(filePath);
        return false;
    }
    const QPointer<CDownloader> self(this);
    Q_EMIT downloadStarted(filePath, bytesTotal);
    if (!self)
        return false;

    const QFileInfo target(filePath);
    m_bytesReceived = target.size();
    m_filePath = filePath;
    m_bytesTotal = bytesTotal;
    m_writeFailed = false;
    QDir().mkpath(target.absolutePath());

    QNetworkRequest request = requestFor(url);
    m_replyBytesReceived = 0;
    if (resume)
        request.setRawHeader("Range", QStringLiteral("bytes=%1-").arg(m_bytesReceived).toLatin1());
    m_reply = m_manager->get(request);
    m_reply->setReadBufferSize(ReadBufferSize);

    connect(
        m_reply, &QObject::destroyed, this, [this] { m_reply = nullptr; }, Qt::DirectConnection);
    connect(m_reply, &QNetworkReply::finished, this, &CDownloader::onFinished);
    connect(m_reply, &QNetworkReply::readyRead, this, &CDownloader::onReadyRead);
    connect(m_reply, &QNetworkReply::downloadProgress, this, &CDownloader::onDownloadProgress);
    connect(m_reply, &QNetworkReply::errorOccurred, this, &CDownloader::onError);
    return true;
}

//! Closes the file after each chunk, so that the file is complete up to that point and the download can be
//! resumed.
void CDownloader::onReadyRead()
{
    QFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)) {
        // The data is discarded from now on. The transfer still runs to its end.
        m_reply->setReadBufferSize(0);
        return;
    }
    // Once for each transfer: on a full disk, every later chunk fails too.
    if (!writeAll(file, m_reply->readAll()) && !std::exchange(m_writeFailed, true))
        qWarning().noquote() << "write file" << m_filePath << "failed:" << file.errorString();
}

void CDownloader::onFinished()
{
    if (!reportEnd())
        return;
    delete m_reply;
    m_reply = nullptr;
}

//! Ignores the total of the reply. This is intentional: for a resumed transfer it counts the remaining bytes
//! only.
void CDownloader::onDownloadProgress(qint64 bytesReceived, qint64 /*bytesTotal*/)
{
    m_bytesReceived += bytesReceived - m_replyBytesReceived;
    m_replyBytesReceived = bytesReceived;
    emitInReplySignal([this] { Q_EMIT downloadProgress(m_filePath, m_bytesReceived, m_bytesTotal); });
}

//! Qt continues to use a reply after it has emitted the error or the end, also in abort. So the event loop
//! deletes the reply later, while this object no longer uses it.
void CDownloader::onError(QNetworkReply::NetworkError /*error*/)
{
    if (!emitInReplySignal([this] { Q_EMIT downloadError(m_filePath, m_reply->errorString()); }))
        return;
    if (m_reply == nullptr) // A slot has processed events, and the transfer has ended meanwhile.
        return;
    disconnect(m_reply, &QNetworkReply::finished, this, &CDownloader::onFinished);
    connect(m_reply, &QNetworkReply::finished, this, &CDownloader::reportEnd);
    const QPointer<CDownloader> self(this);
    m_reply->abort();
    if (!self)
        return;
    disconnect(m_reply, nullptr, this, nullptr);
    m_reply->deleteLater();
    m_reply = nullptr;
}

bool CDownloader::reportEnd()
{
    qWarning() << "request finished with code"
               << m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return emitInReplySignal([this] {
        if (m_reply->error() != QNetworkReply::NoError)
            Q_EMIT downloadError(m_filePath, m_reply->errorString());
        else
            Q_EMIT downloadFinished(m_filePath);
    });
}

bool CDownloader::emitInReplySignal(const std::function<void()>& emitSignal)
{
    const QPointer<CDownloader> self(this);
    const bool isNested = std::exchange(m_isInReplySignal, true);
    emitSignal();
    if (self)
        m_isInReplySignal = isNested;
    return self;
}
