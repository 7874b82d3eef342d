#pragma once

#include "web/downloader.h"
#include "web/webserver.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QString>
#include <QVersionNumber>

#include <optional>

//! \brief Replaces the installation with a newer release, in stages that the pages start one at a time.
//!
//! checkVersion asks the update service, download brings the package and verifies it, upgrade unpacks it
//! beside the installation and then covers: it records the new version, leaves the copying to a batch file
//! and ends the process. The state file lets an interrupted update go on at the next start.
//!
//! The pages know it as `updater`. All of its files lie in the application's directory. GUI thread; only the
//! unpacking runs elsewhere.
class CUpdater final : public QObject
{
    Q_OBJECT
    //! The installed version; empty if it is not known.
    Q_PROPERTY(QString localVersion READ localVersion NOTIFY localVersionChanged)
    //! The version and the notes of the release that the last check found; line breaks are "<br/>".
    Q_PROPERTY(QString latestVersion READ latestVersion NOTIFY latestVersionChanged)
    Q_PROPERTY(QString changeLog READ changeLog NOTIFY changeLogChanged)

public:
    //! Reads the installed version: from `updateConfig.json`, or from the settings if that can't be read.
    explicit CUpdater(QObject* parent = nullptr);
    ~CUpdater() override;

    QString localVersion() const;
    QString latestVersion() const;
    QString changeLog() const;

Q_SIGNALS:
    //! The outcome of a check. A failed check and the lack of a newer release are told alike.
    void needUpdate(bool need);
    void latestVersionChanged();
    void changeLogChanged();
    void localVersionChanged();
    //! A message for the user.
    void readyUpdateInfo(QString info);
    //! Never emitted, so far.
    void readyUpdateError(QString error);
    void downloadStarted(QString filePath, qint64 bytesTotal);
    void downloadProgress(QString filePath, qint64 bytesReceived, qint64 bytesTotal);
    //! The package is complete and its checksum right. A wrong checksum is not told.
    void downloadFinished(QString filePath);
    void upgradeStart();
    //! `percent` runs from 0 to 1. While the package is unpacked it measures time, not work, and stops short
    //! of the end.
    void upgradeProcess(float percent);
    //! The installation is about to be replaced and the process about to end.
    void upgradeEnd();

protected Q_SLOTS:
    void processDownloadFinished(QString filePath);
    void processDownloadError(QString filePath, QString errorString);
    //! Commits to the new version and ends the process. The order of its steps is the order of commitment:
    //! what stands in the records comes before what lies on the disk.
    void doCover();

public:
    //! Asks the service at `url` for the latest release of a product and tells whether it is newer. Blocks
    //! for up to 30 s while it pumps events.
    Q_INVOKABLE void checkVersion(QString url, QString token, QString productId);
    //! Brings the package of the release that checkVersion found, or what is missing of it.
    Q_INVOKABLE void download();
    //! Unpacks the downloaded package and goes on to cover. Returns at once. A failure is logged only.
    Q_INVOKABLE void upgrade();

protected:
    //! A second of the unpacking is over.
    void timerEvent(QTimerEvent* event) override;

private:
    void readLocalVersion();
    bool saveLocalVersion() const;
    void appendUpdateLog();
    //! Logs a text and emits it for the page.
    void reportInfo(const QString& text, const char* file, int line);
    //! The downloader, made if there is none yet.
    CDownloader& downloader();
    //! Makes room for the download: a file that can't be continued goes.
    void prepareTarget(bool continued) const;
    bool startTransfer(QString& errorString);
    //! Takes effect only where no transfer is under way any more. A transfer's own end is told before it has
    //! let go, so the new one is refused there; the user starts over.
    void retry();
    void onUnpacked(bool success);
    //! Emits the signals that end the progress of the page, and gives the page the time to show them.
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
    //! Where the package is, or will be.
    QString m_packagePath;
    //! What the last check told; kept for those who will ask.
    bool m_updateAvailable = false;
    //! Retries of the running download, of either kind.
    quint32 m_retryCount = 0;
    CWebServer m_webServer;
    //! Made with the first download, as the manager of the web server is with its first call. The event loop
    //! deletes the manager, since a slot of its reply may delete this object.
    QScopedPointer<QNetworkAccessManager, QScopedPointerDeleteLater> m_downloadManager;
    std::optional<CDownloader> m_downloader;
    int m_timerId = 0;
    float m_upgradePercent = 0;
};
