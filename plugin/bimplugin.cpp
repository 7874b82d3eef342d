#include "plugin/bimplugin.h"

#include "bim/pdsmgr.h"
#include "login/loginmgr.h"
#include "plugin/messagemgr.h"
#include "project/projectinfomgr.h"

namespace NelvoPlugin {

bool CBimPlugin::Initialize()
{
    m_loginMgr = std::make_unique<CLoginMgr>();
    m_projectInfoMgr = std::make_unique<CProjectInfoMgr>();
    m_pdsMgr = std::make_unique<CPdsMgr>();
    m_messageMgr = std::make_unique<CMessageMgr>();
    return true;
}

//! The message manager remains. This is intentional: the host can still send messages.
bool CBimPlugin::Shutdown()
{
    m_loginMgr.reset();
    if (m_projectInfoMgr)
        m_projectInfoMgr->Shutdown();
    m_projectInfoMgr.reset();
    m_pdsMgr.reset();
    return true;
}

void CBimPlugin::ReservedHook() {}

std::wstring CBimPlugin::GetVersion()
{
    return L"1.0.0";
}

NelvoSDK::ILoginMgr* CBimPlugin::GetLoginMgr()
{
    return m_loginMgr.get();
}

NelvoSDK::IProjectInfoMgr* CBimPlugin::GetProjectInfoMgr()
{
    return m_projectInfoMgr.get();
}

NelvoSDK::IPdsMgr* CBimPlugin::GetPdsMgr()
{
    return m_pdsMgr.get();
}

NelvoSDK::IMessageMgr* CBimPlugin::GetMessageMgr()
{
    return m_messageMgr.get();
}

void CBimPlugin::releaseManagers()
{
    m_pdsMgr.reset();
    m_projectInfoMgr.reset();
    m_loginMgr.reset();
}

} // namespace NelvoPlugin
