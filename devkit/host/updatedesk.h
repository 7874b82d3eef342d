#pragma once

#include "host/hostsettings.h"
#include "host/logmodel.h"
#include "host/operationqueue.h"

#include <QObject>
#include <QPointer>
#include <QQuickView>
#include <QString>

namespace NelvoDevkit {

//! \brief The host's part of the self-update: the check, the download and the installation.
//!
//! The plug-in's interfaces do not contain the update. The updater is the object `updater` in the root
//! context of the login window; the desk knows only its signals, properties and invokable functions. The desk
//! shows their values, whichever code calls the updater.
//!
//! While the login window is visible, its pages control the update and wait for signals that a host must
//! cause: the desk follows the pages and makes these calls. Otherwise the host's window controls the update.
class UpdateDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed)
    //! Whether a check can start: an updater and an update service exist, and no step is running.
    Q_PROPERTY(bool canCheck READ canCheck NOTIFY changed)
    //! Empty if it is unknown.
    Q_PROPERTY(QString installedVersion READ installedVersion NOTIFY changed)
    //! Version of the release that the last check found.
    Q_PROPERTY(QString version READ version NOTIFY changed)
    Q_PROPERTY(QString changeLog READ changeLog NOTIFY changed)
    //! Bytes of the download.
    Q_PROPERTY(qint64 bytesReceived READ bytesReceived NOTIFY changed)
    Q_PROPERTY(qint64 bytesTotal READ bytesTotal NOTIFY changed)
    //! Progress of the download or of the installation, from 0 to 1.
    Q_PROPERTY(qreal progress READ progress NOTIFY changed)
    //! The last message of the updater.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    //! Why the download failed; empty otherwise.
    Q_PROPERTY(QString error READ error NOTIFY changed)

public:
    enum class State {
        Idle,
        Checking,
        NothingNewer, //!< also after a failed check: the updater does not distinguish them
        Offered,
        Downloading, //!< remains if the checksum is wrong, which the updater does not report
        Failed,
        Downloaded,
        Installing, //!< remains if the package is damaged, which the updater does not report
        Restarting,
    };
    Q_ENUM(State)

    //! Looks for the updater of the plug-in, which must be initialised. Does not own `log` and `queue`.
    UpdateDesk(LogModel& log, OperationQueue& queue);

    void setService(const UpdateSource& service);

    State state() const { return m_state; }
    bool canCheck() const;
    QString installedVersion() const;
    QString version() const;
    QString changeLog() const;
    qint64 bytesReceived() const { return m_bytesReceived; }
    qint64 bytesTotal() const { return m_bytesTotal; }
    qreal progress() const { return m_progress; }
    QString message() const { return m_message; }
    QString error() const { return m_error; }

    //! Requests a newer release from the service, as an operation of the queue.
    Q_INVOKABLE void check();
    //! Downloads the offered release, or the missing part of it; also again after a failure.
    Q_INVOKABLE void download();
    //! Unpacks the downloaded package. After a success the process ends and the installation is replaced.
    Q_INVOKABLE void install();
    //! Hides the banner.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();
    //! The login window continues a sign-in that the user has not started, and needs its form page again.
    void loginFormNeeded();

private Q_SLOTS:
    // Connected by name: no public header declares the updater.
    void onNeedUpdate(bool need);
    void onInfo(const QString& text);
    void onDownloadStarted(const QString& filePath, qint64 bytesTotal);
    void onDownloadProgress(const QString& filePath, qint64 bytesReceived, qint64 bytesTotal);
    void onDownloadFinished(const QString& filePath);
    void onUpgradeStart();
    void onUpgradeProcess(float percent);
    void onUpgradeEnd();
    void onPageChanged();

private:
    void findUpdater();
    void connectUpdater();
    void askService();
    void watchPages();
    QString shownPage() const;
    void call(const char* method);
    void enter(State state);

    LogModel& m_log;
    OperationQueue& m_queue;
    UpdateSource m_service;
    QPointer<QQuickView> m_loginWindow;
    QPointer<QObject> m_updater;
    //! The object that changes the pages of the login window, while the desk follows them.
    QPointer<QObject> m_pages;
    //! The page that m_pages showed last.
    QString m_page;
    //! The result of the check arrived at a login window in which no sign-in was running.
    bool m_cameBetween = false;

    State m_state = State::Idle;
    qint64 m_bytesReceived = 0;
    qint64 m_bytesTotal = 0;
    qreal m_progress = 0;
    QString m_message;
    QString m_error;
};

} // namespace NelvoDevkit
