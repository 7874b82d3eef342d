#include "docs/snippets/host.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <utility>

namespace Snippets {

//! [lifecycle]
Host::Host(NelvoSDK::INelvoSDKPlugin& plugin, NelvoSDK::IHostContext* context) : m_plugin(plugin)
{
    m_plugin.SetHostContext(context);
    m_plugin.Initialize();
    m_plugin.GetLoginMgr()->GetLoginActor()->Attach(this);
    m_plugin.GetMessageMgr()->Attach(this);
    m_plugin.GetProjectInfoMgr()->SetPlugin(&m_plugin);
    m_plugin.GetPdsMgr()->SetPlugin(&m_plugin);
}

Host::~Host()
{
    m_plugin.GetMessageMgr()->Detach(this);
    m_plugin.GetLoginMgr()->GetLoginActor()->Detach(this);
    m_plugin.Shutdown();
    m_plugin.SetHostContext(nullptr);
}

void Host::start()
{
    QMetaObject::invokeMethod(
        this, [this] { m_plugin.GetLoginMgr()->Start(); }, Qt::QueuedConnection);
}
//! [lifecycle]

//! [session]
void Host::OnLoginSucceeded(const NelvoSDK::LoginSession& session)
{
    m_orders.add([this, session] { install(session); }); // the reference is valid for this call only
}

void Host::install(NelvoSDK::LoginSession session)
{
    if (session.sdkAddr.empty()) {
        Q_EMIT noService();
        return;
    }
    // A service that already knows this client sets no cookies: the earlier ones stay valid.
    if (session.cookies.empty() && session.sdkAddr == m_session.sdkAddr && !m_pushedOut)
        session.cookies = m_session.cookies;
    m_session = session;
    m_pushedOut = false;
    NelvoSDK::OrgTreeNode earlier;
    m_plugin.GetProjectInfoMgr()->GetOrgTree(earlier);
    m_plugin.GetProjectInfoMgr()->ReflushProjOrgInfo(m_session);
    Q_EMIT sessionInstalled(int(earlier.children.size()));
}
//! [session]

//! [push-out]
void Host::OnMessageFirst(const QString& text)
{
    if (std::exchange(m_pushedOut, true))
        return; // repeated every ten seconds; handle it once
    m_orders.add([this, text] { Q_EMIT pushedOut(text); });
}

void Host::signInAgain()
{
    m_plugin.GetLoginMgr()->GetLoginActor()->ShowLogin();
}
//! [push-out]

} // namespace Snippets
