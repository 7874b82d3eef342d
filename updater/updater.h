#pragma once

#include "web/downloader.h"
#include "web/webserver.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QVersionNumber>

#include <optional>

//! \brief Replaces the installation with a newer release, in steps that the pages start one by one.
//!
//! checkVersion sends a request to the update service. download fetches the package and verifies it. upgrade
//! unpacks it beside the installation and then runs doCover: it records the new version, starts a batch file
//! that copies the files, and ends the process. With the state file, an interrupted update can continue at
//! the next start.
//!
//! The pages know the object as `updater`. All of its files are in the application's directory. GUI thread;
//! only the unpacking runs on another thread.
class CUpdater final : public QObject
{
    Q_OBJECT
    //! The installed version; empty if it is unknown.
    Q_PROPERTY(QString localVersion READ localVersion NOTIFY localVersionChanged)
    //! Version and notes of the release that the last check found; line breaks are "<br/>".
    Q_PROPERTY(QString latestVersion READ latestVersion NOTIFY latestVersionChanged)
    Q_PROPERTY(QString changeLog READ changeLog NOTIFY changeLogChanged)

public:
    //! Reads the installed version from `updateConfig.json`, or from the settings if that file cannot be
    //! read.
    explicit CUpdater(QObject* parent = nullptr);
    ~CUpdater() override;

    QString localVersion() const;
    QString latestVersion() const;
    QString changeLog() const;

Q_SIGNALS:
    //! The result of a check. False after a failed check too.
    void needUpdate(bool need);
    void latestVersionChanged();
    void changeLogChanged();
    void localVersionChanged();
    //! A message for the user.
    void readyUpdateInfo(QString info);
    //! Never emitted.
    void readyUpdateError(QString error);
    void downloadStarted(QString filePath, qint64 bytesTotal);
    void downloadProgress(QString filePath, qint64 bytesReceived, qint64 bytesTotal);
    //! The package is complete and its checksum is correct. A wrong checksum emits nothing.
    void downloadFinished(QString filePath);
    void upgradeStart();
    //! `percent` grows from 0 to 1. During unpacking it measures time, not work, and does not reach the end.
    void upgradeProcess(float percent);
    //! The installation will be replaced and the process will end.
    void upgradeEnd();

protected Q_SLOTS:
    void processDownloadFinished(QString filePath);
    void processDownloadError(QString filePath, QString errorString);
    //! Records the new version, starts the batch file and ends the process. The order of the steps is
    //! intentional: the records are written before the files are replaced.
    void doCover();

public:
    //! Requests the latest release of a product from the service at `url` and emits whether it is newer.
    //! Blocks for at most 30 seconds and processes events meanwhile.
    Q_INVOKABLE void checkVersion(QString url, QString token, QString productId);
    //! Downloads the package of the release that checkVersion found, or the missing part of it.
    Q_INVOKABLE void download();
    //! Unpacks the downloaded package and then runs doCover. Returns at once. A failure is only logged.
    Q_INVOKABLE void upgrade();

protected:
    //! Another second of the unpacking has passed.
    void timerEvent(QTimerEvent* event) override;

private:
    void readLocalVersion();
    bool saveLocalVersion() const;
    void appendUpdateLog();
    //! Logs a text and emits it for the page.
    void reportInfo(const QString& text, const char* file, int line);
    //! Returns the downloader and creates it on the first call.
    CDownloader& downloader();
    //! Removes a package file whose download cannot be resumed.
    void prepareTarget(bool continued) const;
    bool startTransfer(QString& errorString);
    //! Starts the transfer again. No effect inside the end signal of a transfer: the downloader is still busy
    //! and refuses the new transfer, and the user must start the download again.
    void retry();
    void onUnpacked(bool success);
    //! Emits the signals that end the progress of the page, and waits while the page shows them.
    void announceCover();

    QVersionNumber m_localVersion;
    QString m_updateDir;
    QString m_unCompressDir;
    QString m_logFilePath;
    QString m_stateFilePath;
    QString m_latestVersion;
    QString m_changeLog;
    QString m_fullMd5;
    qint64 m_fullSize = 0;
    QString m_fullPath;
    //! The path of the package, whether or not the file exists.
    QString m_packagePath;
    //! Retries of the running download, after failures and after wrong checksums.
    quint32 m_retryCount = 0;
    CWebServer m_webServer;
    //! Created by the first download, as the web server's manager is by its first call. The event loop
    //! deletes the manager, because a slot of its reply may delete this object.
    QScopedPointer<QNetworkAccessManager, QScopedPointerDeleteLater> m_downloadManager;
    std::optional<CDownloader> m_downloader;
    int m_timerId = 0;
    float m_upgradePercent = 0;
};
