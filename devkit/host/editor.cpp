#include "host/editor.h"

#include "host/sessionrecord.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>

#include <QGuiApplication>
#include <QQmlContext>
#include <QVariantMap>

namespace NelvoDevkit {

namespace {

//! Under the names that the plug-in's component panel uses.
QVariantMap editColors()
{
    return {{QStringLiteral("eGlobalBackGround"), QStringLiteral("#20222e")},
            {QStringLiteral("eGlobalBorderColor"), QStringLiteral("#3d4054")}};
}

} // namespace

Editor::Editor(NelvoSDK::INelvoSDKPlugin& plugin, LogModel& log, QWebChannel* channel)
    : m_plugin(plugin), m_log(log), m_channel(channel), m_webView(log)
{
    m_plugin.SetHostContext(static_cast<NelvoSDK::IHostContext*>(this));
    m_plugin.Initialize();
    m_plugin.GetLoginMgr()->GetLoginActor()->Attach(this);
    m_plugin.GetMessageMgr()->Attach(this);
    m_projects = std::make_unique<ProjectDesk>(m_plugin, m_log);
    m_models = std::make_unique<ModelDesk>(m_plugin, m_log);
    m_component = std::make_unique<ComponentCard>(*m_projects->devices());
    m_updates = std::make_unique<UpdateDesk>(m_log, *m_projects->queue());
    connect(m_updates.get(), &UpdateDesk::loginFormNeeded, this, &Editor::signInAgain);
    connect(m_projects.get(), &ProjectDesk::sessionInstalled, m_models.get(), &ModelDesk::readModels);
    m_log.logAction(QStringLiteral("plug-in %1 initialized").arg(pluginVersion()));
}

Editor::~Editor()
{
    m_plugin.GetMessageMgr()->Detach(this);
    m_plugin.GetLoginMgr()->GetLoginActor()->Detach(this);
    m_updates.reset();
    m_component.reset();
    m_models.reset();
    m_projects.reset();
    m_plugin.Shutdown();
    m_plugin.SetHostContext(nullptr);
}

QString Editor::enterprise() const
{
    return m_session ? QString::fromStdWString(m_session->epName) : QString();
}

QVariantList Editor::session() const
{
    return m_session ? describeSession(*m_session) : QVariantList();
}

QString Editor::pluginVersion() const
{
    return QString::fromStdWString(m_plugin.GetVersion());
}

void Editor::publish(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("globalEditColor"), editColors());
    context->setContextProperty(QStringLiteral("compCardData"), m_component.get());
    context->setContextProperty(QStringLiteral("componentObject"), m_component.get());
    context->setContextProperty(QStringLiteral("webViewMgr"), &m_webView);
    context->setContextProperty(QStringLiteral("appPath"), QCoreApplication::applicationDirPath());
    m_models->publish(context);
}

void Editor::start()
{
    m_log.logAction(QStringLiteral("ILoginMgr::Start"));
    m_plugin.GetLoginMgr()->Start();
}

void Editor::signInAgain()
{
    m_log.logAction(QStringLiteral("sign in again: ILoginActor::ShowLogin"));
    m_plugin.GetLoginMgr()->GetLoginActor()->ShowLogin();
}

void Editor::signOut()
{
    m_log.logAction(QStringLiteral("sign out: session forgotten, ILoginActor::ShowLogin"));
    // The plug-in sets this to false after a sign-in. Now the login window is the only one again and ends the
    // application, as at the start.
    QGuiApplication::setQuitOnLastWindowClosed(true);
    m_plugin.GetLoginMgr()->GetLoginActor()->ShowLogin();
    m_session.reset();
    m_projects->closeSession();
    forgetNotice();
    Q_EMIT sessionChanged();
}

void Editor::dismissNotice()
{
    m_noticeDismissed = true;
    Q_EMIT noticeChanged();
}

void Editor::forgetNotice()
{
    m_notice.clear();
    m_noticeDismissed = false;
    Q_EMIT noticeChanged();
}

QWebChannel* Editor::GetWebChannel()
{
    m_log.logCall(QStringLiteral("IHostContext::GetWebChannel") +
                  (m_channel ? QString() : QStringLiteral(": none")));
    return m_channel;
}

void Editor::OnLoginSucceeded(const NelvoSDK::LoginSession& session)
{
    m_log.logCall(
        QStringLiteral("ILoginObserver::OnLoginSucceeded: enterprise \"%1\", editor service \"%2\"")
            .arg(QString::fromStdWString(session.epName), QString::fromStdWString(session.sdkAddr)));
    m_session = session;
    m_projects->openSession(withCookies(session));
    forgetNotice();
    Q_EMIT sessionChanged();
}

//! A session contains new cookies only. If it has none, the service has bound the earlier cookies to it. A
//! client that was pushed out has no valid earlier cookies.
NelvoSDK::LoginSession Editor::withCookies(NelvoSDK::LoginSession session)
{
    if (!session.cookies.empty()) {
        m_cookieSource = session;
    } else if (m_cookieSource && m_cookieSource->sdkAddr == session.sdkAddr) {
        m_log.logAction(QStringLiteral("no new cookies: those of the earlier sign-in hold on"));
        session.cookies = m_cookieSource->cookies;
    }
    return session;
}

void Editor::OnLoginFailed()
{
    m_log.logCall(QStringLiteral("ILoginObserver::OnLoginFailed"));
}

void Editor::OnMessageFirst(const QString& text)
{
    m_log.logCall(QStringLiteral("IMessageObserver::OnMessageFirst: ") + text);
    m_cookieSource.reset();
    m_notice = text;
    Q_EMIT noticeChanged();
}

void Editor::OnMessageSecond(const QString& text)
{
    m_log.logCall(QStringLiteral("IMessageObserver::OnMessageSecond: ") + text);
}

void Editor::OnMessageThird(const QString& text)
{
    m_log.logCall(QStringLiteral("IMessageObserver::OnMessageThird: ") + text);
}

} // namespace NelvoDevkit
