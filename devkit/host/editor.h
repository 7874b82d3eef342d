#pragma once

#include "host/componentcard.h"
#include "host/logmodel.h"
#include "host/modeldesk.h"
#include "host/projectdesk.h"
#include "host/updatedesk.h"
#include "host/webview.h"

#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/ILoginObserver.h>
#include <NelvoSDK/IMessageObserver.h>
#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QObject>
#include <QVariantList>

#include <memory>
#include <optional>

namespace NelvoDevkit {

//! \brief The editor behind the host's window: owns the session and calls the plug-in.
//!
//! From construction to destruction the plug-in is initialised and this object is attached as observer.
//! Create and destroy it while a QGuiApplication exists. Destroy the QML engine first: the plug-in's pages
//! must end before the plug-in.
class Editor : public QObject,
               private NelvoSDK::IHostContext,
               private NelvoSDK::ILoginObserver,
               private NelvoSDK::IMessageObserver
{
    Q_OBJECT
    Q_PROPERTY(bool signedIn READ isSignedIn NOTIFY sessionChanged)
    Q_PROPERTY(QString enterprise READ enterprise NOTIFY sessionChanged)
    Q_PROPERTY(QVariantList session READ session NOTIFY sessionChanged)
    Q_PROPERTY(QString pluginVersion READ pluginVersion CONSTANT)
    Q_PROPERTY(NelvoDevkit::ProjectDesk* projects READ projects CONSTANT)
    Q_PROPERTY(NelvoDevkit::ModelDesk* models READ models CONSTANT)
    Q_PROPERTY(NelvoDevkit::ComponentCard* component READ component CONSTANT)
    Q_PROPERTY(NelvoDevkit::UpdateDesk* updates READ updates CONSTANT)
    Q_PROPERTY(NelvoDevkit::WebView* webView READ webView CONSTANT)
    //! Why this client has been forced offline; empty if it has not been, or if the user has dismissed the
    //! notice.
    Q_PROPERTY(QString notice READ notice NOTIFY noticeChanged)

public:
    //! `channel` is the host's web channel for the plug-in, or null. Owns none of them; all must outlive the
    //! editor.
    Editor(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log, QWebChannel* channel);
    ~Editor() override;
    Q_DISABLE_COPY(Editor)

    bool isSignedIn() const { return m_session.has_value(); }
    //! Name of the signed-in enterprise; empty without a session.
    QString enterprise() const;
    //! The session as rows of describeSession; empty without a session.
    QVariantList session() const;
    QString pluginVersion() const;
    ProjectDesk* projects() const { return m_projects.get(); }
    ModelDesk* models() const { return m_models.get(); }
    ComponentCard* component() const { return m_component.get(); }
    UpdateDesk* updates() const { return m_updates.get(); }
    WebView* webView() { return &m_webView; }
    QString notice() const { return m_noticeDismissed ? QString() : m_notice; }

    //! Adds the names that the plug-in's pages use to the context, which is not owned. Call it before
    //! anything is loaded.
    void publish(QQmlContext* context);
    //! Starts the sign-in. Call it once, from the event loop, so that the plug-in can end that loop.
    void start();
    //! Shows the login window. The session remains until another one replaces it.
    Q_INVOKABLE void signInAgain();
    //! Drops the session and shows the login window.
    Q_INVOKABLE void signOut();
    //! Hides the notice until the next session, even if the message is repeated.
    Q_INVOKABLE void dismissNotice();

Q_SIGNALS:
    //! The session has been set, replaced or removed.
    void sessionChanged();
    void noticeChanged();

private:
    QWebChannel* GetWebChannel() override;
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override;
    void OnLoginFailed() override;
    void OnMessageFirst(const QString& text) override;
    void OnMessageSecond(const QString& text) override;
    void OnMessageThird(const QString& text) override;

    //! The session with cookies that are valid for it.
    NelvoSDK::LoginSession withCookies(NelvoSDK::LoginSession session);
    void forgetNotice();

    NelvoSDK::INelvoSDKPlugin& m_plugin;
    LogModel& m_log;
    QWebChannel* m_channel;
    std::unique_ptr<ProjectDesk> m_projects;
    std::unique_ptr<ModelDesk> m_models;
    std::unique_ptr<ComponentCard> m_component;
    std::unique_ptr<UpdateDesk> m_updates;
    WebView m_webView;
    std::optional<NelvoSDK::LoginSession> m_session;
    //! The last sign-in that had cookies, while they are valid.
    std::optional<NelvoSDK::LoginSession> m_cookieSource;
    QString m_notice;
    bool m_noticeDismissed = false;
};

} // namespace NelvoDevkit
