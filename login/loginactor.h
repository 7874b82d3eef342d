#pragma once

#include "updater/updater.h"

#include <BVUtility/ISubject.h>
#include <NelvoSDK/ILoginActor.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

class QQuickView;
class TestLoginActor;

namespace NelvoPlugin {

class WindowActivity;

//! \brief Runs a sign-in, from the form to the observers of the host.
//!
//! The pages know the actor as `loginCtrl`. They call login, then onLogin for the chosen enterprise, then
//! onShowHome, which passes the session to the observers. GUI thread. login and onLogin block and process
//! events meanwhile. The actor does not prevent a second call during that time; the pages do. Code that runs
//! inside a call, such as an observer, may delete the actor: the call then has no further effect.
class CLoginActor final : public QObject,
                          public NelvoSDK::ILoginActor,
                          public BVUTILITY::ISubject<NelvoSDK::ILoginObserver>
{
    Q_OBJECT
    //! The company list of the last successful login: objects with "enterpriseId" and "enterpriseName".
    Q_PROPERTY(QJsonArray appList READ appList NOTIFY appListChanged)

public:
    //! Reads the address files and adds itself to the view's root context. `view` is not owned.
    explicit CLoginActor(QQuickView* view, QObject* parent = nullptr);

    void ReservedFirst() override;
    void ReservedSecond() override;
    bool ReservedFlag() override;
    void ShowLogin() override;
    void Attach(NelvoSDK::ILoginObserver* observer) override;
    void Detach(NelvoSDK::ILoginObserver* observer) override;

    //! Runs a whole sign-in with the MD5 of the password: signs in, enters the enterprise of the list with
    //! that id, and passes the session to the observers. A failed sign-in is logged and asks the application
    //! to quit; the remaining steps still run.
    void loginFromCommandLine(QString userName, QString pwd, QString cimUrl, QString epId);

    QJsonArray appList() const;

Q_SIGNALS:
    void succeed();
    void appListChanged();

public Q_SLOTS:
    //! Signs in at the service `cimUrl` (scheme and host, no trailing slash) and reads the company list.
    //! `pwd` is the clear password, or its lower-case hexadecimal MD5 if `pwdIsMd5`; `pdsUrl` is ignored.
    //! Returns the message for the user, empty after a success. Calls observers after a failure only.
    QString login(QString userName, QString pwd, QString cimUrl, QString pdsUrl, bool pwdIsMd5 = false);
    //! Does nothing and returns an empty string.
    QString getToken(QString appID, QString secret);
    //! Stores the account in the cache, with its password if `bKeep`.
    void onResetCache(QVariant user, QVariant passwd, QVariant cimUrl, QVariant pdsUrl, QVariant bKeep);
    //! Binds the session to an enterprise, requests the service addresses and the token, and fills the
    //! session. A failure is logged and leaves the session unchanged.
    void onLogin(QString cimUrl, QString epID, QString epName);
    //! Closes the window and passes the session to the observers, even if it is empty.
    void onShowHome();

private:
    friend class ::TestLoginActor;

    QString signIn(const QString& userName, const QString& passwordText, const QString& cimUrl);
    void logout();
    void showIfWanted();

    QQuickView* m_view;
    WindowActivity& m_activity;
    //! The pages know it as `updater`.
    CUpdater m_updater;
    //! Base address of the sign-in service, set when the form has been accepted.
    QString m_cimUrl;
    //! Unused, like m_spareArray: both keep their places.
    QString m_spareText;
    //! Always empty: no service provides a token yet.
    QString m_token;
    QJsonArray m_appList;
    QJsonArray m_spareArray;
    QString m_defaultUrl;
    //! The session of the last complete onLogin; empty before.
    QJsonObject m_session;
    QString m_urlSuffix;
    //! ShowLogin was called while the window was busy.
    bool m_showLater = false;
};

} // namespace NelvoPlugin
