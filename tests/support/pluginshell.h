#pragma once

#include <NelvoSDK/INelvoSDKPlugin.h>

namespace TestSupport {

//! \brief A plug-in object that returns the given managers and does nothing else. Owns none of them.
class PluginShell final : public NelvoSDK::INelvoSDKPlugin
{
public:
    bool Initialize() override { return true; }
    bool Shutdown() override { return true; }
    void ReservedHook() override {}
    std::wstring GetVersion() override { return {}; }
    NelvoSDK::ILoginMgr* GetLoginMgr() override { return loginMgr; }
    NelvoSDK::IProjectInfoMgr* GetProjectInfoMgr() override { return projectInfoMgr; }
    NelvoSDK::IPdsMgr* GetPdsMgr() override { return pdsMgr; }
    NelvoSDK::IMessageMgr* GetMessageMgr() override { return messageMgr; }

    NelvoSDK::ILoginMgr* loginMgr = nullptr;
    NelvoSDK::IProjectInfoMgr* projectInfoMgr = nullptr;
    NelvoSDK::IPdsMgr* pdsMgr = nullptr;
    NelvoSDK::IMessageMgr* messageMgr = nullptr;
};

} // namespace TestSupport
