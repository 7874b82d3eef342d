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

//! \brief Carries a sign-in from the form to the host.
//!
//! The pages reach it as `loginCtrl`: they call login, then onLogin for the chosen enterprise, then
//! onShowHome, which publishes the session to the observers. GUI thread. login and onLogin block while they
//! pump events; nothing here keeps a second call from arriving meanwhile, that is the pages' business. What
//! runs inside a call, an observer too, may delete this object: the call then ends and does nothing more.
class CLoginActor final : public QObject,
                          public NelvoSDK::ILoginActor,
                          public BVUTILITY::ISubject<NelvoSDK::ILoginObserver>
{
    Q_OBJECT
    //! The company list of the last successful login: objects with "enterpriseId" and "enterpriseName".
    Q_PROPERTY(QJsonArray appList READ appList NOTIFY appListChanged)

public:
    //! Reads the address files and publishes itself in the view's root context. `view` is not owned.
    explicit CLoginActor(QQuickView* view, QObject* parent = nullptr);

    void ReservedFirst() override;
    void ReservedSecond() override;
    bool ReservedFlag() override;
    void ShowLogin() override;
    void Attach(NelvoSDK::ILoginObserver* observer) override;
    void Detach(NelvoSDK::ILoginObserver* observer) override;

    //! The whole sign-in in one go, with the MD5 of the password: signs in, enters the enterprise of the
    //! list with that id and publishes the session. A sign-in that fails is logged, asks the application to
    //! quit, and goes through the rest all the same.
    void loginFromCommandLine(QString userName, QString pwd, QString cimUrl, QString epId);

    QJsonArray appList() const;

Q_SIGNALS:
    void succeed();
    void appListChanged();

public Q_SLOTS:
    //! Signs in at the service `cimUrl` (scheme and host, no trailing slash) and reads the company list.
    //! `pwd` is the clear password, or its lower-case hexadecimal MD5 if `pwdIsMd5`; `pdsUrl` is ignored.
    //! Returns the message to show, empty for success. Observers hear of a failure only.
    QString login(QString userName, QString pwd, QString cimUrl, QString pdsUrl, bool pwdIsMd5 = false);
    //! Returns an empty text and does nothing.
    QString getToken(QString appID, QString secret);
    //! Remembers the account in the cache, with its password if `bKeep`.
    void onResetCache(QVariant user, QVariant passwd, QVariant cimUrl, QVariant pdsUrl, QVariant bKeep);
    //! Binds the session to an enterprise, looks up the service addresses and tokens and fills the session.
    //! A failure is logged and leaves the session as it was.
    void onLogin(QString cimUrl, QString epID, QString epName);
    //! Closes the window and publishes the session, whatever it holds.
    void onShowHome();

private:
    friend class ::TestLoginActor;

    QString signIn(const QString& userName, const QString& passwordText, const QString& cimUrl);
    void logout();
    void showIfWanted();

    QQuickView* m_view;
    WindowActivity& m_activity;
    //! What the pages know as `updater`.
    CUpdater m_updater;
    //! Base address of the sign-in service since the form was accepted.
    QString m_cimUrl;
    //! Unused, like m_spareArray: they keep their places.
    QString m_spareText;
    //! Stays empty; nothing hands out a service token yet.
    QString m_token;
    QJsonArray m_appList;
    QJsonArray m_spareArray;
    QString m_defaultUrl;
    //! What the last completed onLogin found out; empty before.
    QJsonObject m_session;
    QString m_urlSuffix;
    //! ShowLogin was called while the window was busy.
    bool m_showLater = false;
};

} // namespace NelvoPlugin
