#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QString>

#include <functional>

class QNetworkAccessManager;

//! \brief Brings one large file over HTTP into a local path and can go on where an earlier run stopped.
//!
//! What arrives is appended to the file at once, so that a crash loses the chunk under way and no more.
//! Nothing is ever removed or truncated, and neither status codes nor lengths are examined: whether the
//! file is the right one is for its checksum to tell. Bytes that the disk doesn't take, because it is full,
//! are missing in the file, and a warning in the log is all that tells of it.
//!
//! One transfer at a time, on the thread of the object, by its event loop. There is no timeout and no
//! cancel; destroying the object ends a transfer without a signal. It may be destroyed in a slot of its own
//! signals.
class CDownloader final : public QObject
{
    Q_OBJECT

public:
    //! `manager` is not owned.
    explicit CDownloader(QNetworkAccessManager* manager, QObject* parent = nullptr);
    ~CDownloader() override;

    //! Starts a transfer from `url` to the end of the file `filePath`, whose directory is made if need be.
    //! `bytesTotal` is the size of the complete file, which progress is reported against.
    //!
    //! With `resume` it asks for the part of the file that is not there yet, without it for the whole. Either
    //! way the bytes are appended: a caller who wants a fresh file removes the old one first.
    //!
    //! Returns false, with the reason in `errorString`, while another transfer is under way. That is also so
    //! in a slot connected directly to downloadFinished or downloadError.
    bool download(const QString& url, const QString& filePath, qint64 bytesTotal, QString& errorString,
                  bool resume);

Q_SIGNALS:
    void downloadStarted(QString filePath, qint64 bytesTotal);
    void downloadFinished(QString filePath);
    //! `bytesReceived` counts what was in the file before; it passes `bytesTotal` if the server sends more.
    void downloadProgress(QString filePath, qint64 bytesReceived, qint64 bytesTotal);
    //! The transfer failed. One failure may be told twice.
    void downloadError(QString filePath, QString errorString);

private Q_SLOTS:
    void onReadyRead();
    void onFinished();
    void onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);
    void onError(QNetworkReply::NetworkError error);

private:
    //! Emits how the transfer ended. Returns false if a slot has deleted this object.
    bool reportEnd();
    //! Calls what emits a signal of this object inside one of the reply's. Returns false if a slot has
    //! deleted this object.
    bool emitInReplySignal(const std::function<void()>& emitSignal);

    QNetworkAccessManager* m_manager;
    //! Bytes of the file so far, earlier runs included.
    qint64 m_bytesReceived = 0;
    //! What the present reply last reported.
    qint64 m_replyBytesReceived = 0;
    qint64 m_bytesTotal = 0;
    //! The transfer under way, or null. Owned here, though it is the manager's child.
    QNetworkReply* m_reply = nullptr;
    QString m_filePath;
    //! The reply is emitting, so it can't be deleted at once.
    bool m_isInReplySignal = false;
    //! Whether the log has it that bytes of this transfer didn't reach the disk.
    bool m_writeFailed = false;
};
