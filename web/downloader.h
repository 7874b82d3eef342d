#pragma once

#include <QNetworkReply>
#include <QObject>
#include <QString>

#include <functional>

class QNetworkAccessManager;

//! \brief Downloads one large file over HTTP and can resume an earlier download.
//!
//! Each received chunk is appended to the file at once, so a crash loses at most the current chunk. The
//! downloader never removes or truncates a file, and it checks neither status codes nor lengths: the caller
//! verifies the checksum. If the disk is full, bytes are missing in the file, and the only sign is a warning
//! in the log.
//!
//! One transfer at a time, on the thread of the object, driven by its event loop. There is no timeout and no
//! cancellation; destroying the object ends a transfer without a signal. A slot of its own signals may
//! destroy it.
class CDownloader final : public QObject
{
    Q_OBJECT

public:
    //! `manager` is not owned.
    explicit CDownloader(QNetworkAccessManager* manager, QObject* parent = nullptr);
    ~CDownloader() override;

    //! Starts a transfer from `url` to the end of the file `filePath` and creates its directory if it is
    //! missing. `bytesTotal` is the size of the complete file, used for downloadProgress.
    //!
    //! With `resume` it requests the missing part of the file, otherwise the whole file. Both append to the
    //! file: to get a new file, remove the old one first.
    //!
    //! Returns false, with the reason in `errorString`, while another transfer runs; also in a slot that is
    //! connected directly to downloadFinished or downloadError.
    bool download(const QString& url, const QString& filePath, qint64 bytesTotal, QString& errorString,
                  bool resume);

Q_SIGNALS:
    void downloadStarted(QString filePath, qint64 bytesTotal);
    void downloadFinished(QString filePath);
    //! `bytesReceived` includes the bytes of earlier runs. It exceeds `bytesTotal` if the server sends more.
    void downloadProgress(QString filePath, qint64 bytesReceived, qint64 bytesTotal);
    //! The transfer failed. May be emitted twice for one failure.
    void downloadError(QString filePath, QString errorString);

private Q_SLOTS:
    void onReadyRead();
    void onFinished();
    void onDownloadProgress(qint64 bytesReceived, qint64 bytesTotal);
    void onError(QNetworkReply::NetworkError error);

private:
    //! Emits the end of the transfer. Returns false if a slot has deleted this object.
    bool reportEnd();
    //! Calls `emitSignal`, which emits a signal of this object inside a signal of the reply. Returns false if
    //! a slot has deleted this object.
    bool emitInReplySignal(const std::function<void()>& emitSignal);

    QNetworkAccessManager* m_manager;
    //! The bytes in the file so far, including earlier runs.
    qint64 m_bytesReceived = 0;
    //! The bytes that the current reply last reported.
    qint64 m_replyBytesReceived = 0;
    qint64 m_bytesTotal = 0;
    //! The current transfer, or null. Owned here, although it is a child of the manager.
    QNetworkReply* m_reply = nullptr;
    QString m_filePath;
    //! True while the reply emits a signal: it cannot be deleted then.
    bool m_isInReplySignal = false;
    //! Whether a lost write of this transfer has been logged.
    bool m_writeFailed = false;
};
