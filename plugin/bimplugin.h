#pragma once

#include <NelvoSDK/INelvoSDKPlugin.h>

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <memory>

namespace NelvoPlugin {

//! \brief The plug-in object: creates and owns the managers.
//!
//! GetNelvoSDKPlugin returns the only object of the process. It can exist before any Qt object.
class CBimPlugin : public NelvoSDK::INelvoSDKPlugin
{
public:
    bool Initialize() override;
    bool Shutdown() override;
    void ReservedHook() override;
    std::wstring GetVersion() override;
    NelvoSDK::ILoginMgr* GetLoginMgr() override;
    NelvoSDK::IProjectInfoMgr* GetProjectInfoMgr() override;
    NelvoSDK::IPdsMgr* GetPdsMgr() override;
    NelvoSDK::IMessageMgr* GetMessageMgr() override;

protected:
    //! Deletes all managers except the message manager, in the order of the destructor.
    void releaseManagers();

private:
    std::unique_ptr<NelvoSDK::ILoginMgr> m_loginMgr;
    std::unique_ptr<NelvoSDK::IProjectInfoMgr> m_projectInfoMgr;
    std::unique_ptr<NelvoSDK::IPdsMgr> m_pdsMgr;
    std::unique_ptr<NelvoSDK::IMessageMgr> m_messageMgr;
};

} // namespace NelvoPlugin
