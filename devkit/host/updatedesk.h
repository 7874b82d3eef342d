#pragma once

#include "host/hostsettings.h"
#include "host/logmodel.h"
#include "host/operationqueue.h"

#include <QObject>
#include <QPointer>
#include <QQuickView>
#include <QString>

namespace NelvoDevkit {

//! \brief What the plug-in leaves to its host in the self-update: the check, the download, the installation.
//!
//! The plug-in's interfaces do not know of the update. It is the object `updater` in the root context of the
//! login window, which is known here by its signals, properties and invokables alone. What the desk shows
//! comes from those, whoever makes the calls.
//!
//! While the login window shows, its pages lead through the update and wait for somebody to do what they
//! promise: the desk follows them. Otherwise the host's own window leads.
class UpdateDesk : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY changed)
    //! Whether there is an updater, a service to ask, and nothing in the way of asking it.
    Q_PROPERTY(bool canCheck READ canCheck NOTIFY changed)
    //! Empty if it is not known.
    Q_PROPERTY(QString installedVersion READ installedVersion NOTIFY changed)
    //! Of the release that the last check found.
    Q_PROPERTY(QString version READ version NOTIFY changed)
    Q_PROPERTY(QString changeLog READ changeLog NOTIFY changed)
    //! Of the download.
    Q_PROPERTY(qint64 bytesReceived READ bytesReceived NOTIFY changed)
    Q_PROPERTY(qint64 bytesTotal READ bytesTotal NOTIFY changed)
    //! Of the download, or of the installation: 0 to 1.
    Q_PROPERTY(qreal progress READ progress NOTIFY changed)
    //! The last message of the updater.
    Q_PROPERTY(QString message READ message NOTIFY changed)
    //! Why the download failed; empty while it has not.
    Q_PROPERTY(QString error READ error NOTIFY changed)

public:
    enum class State {
        Idle,
        Checking,
        NothingNewer, //!< or a check that failed: the updater tells both alike
        Offered,
        Downloading, //!< for ever if the checksum turns out wrong, which the updater does not tell
        Failed,
        Downloaded,
        Installing, //!< for ever if the package turns out damaged, which the updater does not tell
        Restarting,
    };
    Q_ENUM(State)

    //! Looks for the updater of the plug-in, which is initialised. `log` and `queue` are not owned.
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

    //! Asks the service for a newer release, as an order of the queue.
    Q_INVOKABLE void check();
    //! Fetches the offered release, or what is missing of it; also once more after a failure.
    Q_INVOKABLE void download();
    //! Unpacks the downloaded package. If all goes well, the process ends and the installation is replaced.
    Q_INVOKABLE void install();
    //! The user has seen it.
    Q_INVOKABLE void dismiss();

Q_SIGNALS:
    void changed();
    //! The login window goes on with a sign-in that nobody has begun, and needs its form back.
    void loginFormNeeded();

private Q_SLOTS:
    // By name: nothing that a host sees declares the updater.
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
    //! What changes the pages of the login window, while they are followed.
    QPointer<QObject> m_pages;
    //! The page that m_pages showed last.
    QString m_page;
    //! The outcome of the check came to a login window in which nobody was signing in.
    bool m_cameBetween = false;

    State m_state = State::Idle;
    qint64 m_bytesReceived = 0;
    qint64 m_bytesTotal = 0;
    qreal m_progress = 0;
    QString m_message;
    QString m_error;
};

} // namespace NelvoDevkit
