#pragma once

#include "pdsstandin.h"
#include "projectinfostandin.h"

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>
#include <NelvoSDK/INelvoSDKPlugin.h>

#include <QStringList>

#include <functional>

//! \brief A plug-in that only records the host's calls in their order.
class PluginStandIn final : public NelvoSDK::INelvoSDKPlugin,
                            private NelvoSDK::ILoginMgr,
                            private NelvoSDK::ILoginActor,
                            private NelvoSDK::IMessageMgr
{
public:
    QStringList calls;
    ProjectInfoStandIn projects;
    PdsStandIn models;
    NelvoSDK::ILoginObserver* loginObserver = nullptr;
    NelvoSDK::IMessageObserver* messageObserver = nullptr;

    //! Called by Shutdown.
    std::function<void()> onShutdown;

    // INelvoSDKPlugin
    bool Initialize() override { return note("Initialize"), true; }
    bool Shutdown() override
    {
        if (onShutdown)
            onShutdown();
        return note("Shutdown"), true;
    }
    void ReservedHook() override {}
    std::wstring GetVersion() override { return L"9.8.7"; }
    NelvoSDK::ILoginMgr* GetLoginMgr() override { return this; }
    NelvoSDK::IProjectInfoMgr* GetProjectInfoMgr() override { return &projects; }
    NelvoSDK::IPdsMgr* GetPdsMgr() override { return &models; }
    NelvoSDK::IMessageMgr* GetMessageMgr() override { return this; }
    void SetHostContext(void* context) override
    {
        note(context ? "SetHostContext" : "SetHostContext null");
        hostContext = context;
    }

private:
    // ILoginMgr
    NelvoSDK::ILoginActor* GetLoginActor() override { return this; }
    void Start() override { note("Start"); }

    // ILoginActor
    void ReservedFirst() override {}
    void ReservedSecond() override {}
    bool ReservedFlag() override { return false; }
    void ShowLogin() override { note("ShowLogin"); }
    void Attach(NelvoSDK::ILoginObserver* observer) override
    {
        note("Attach login");
        loginObserver = observer;
    }
    void Detach(NelvoSDK::ILoginObserver* observer) override
    {
        note(observer == loginObserver ? "Detach login" : "Detach a stranger");
        loginObserver = nullptr;
    }

    // IMessageMgr
    void NotifyFirst(const QString& /*text*/) override {}
    void NotifySecond(const QString& /*text*/) override {}
    void NotifyThird(const QString& /*text*/) override {}
    void Attach(NelvoSDK::IMessageObserver* observer) override
    {
        note("Attach message");
        messageObserver = observer;
    }
    void Detach(NelvoSDK::IMessageObserver* observer) override
    {
        note(observer == messageObserver ? "Detach message" : "Detach a stranger");
        messageObserver = nullptr;
    }

    // ILoginMgr and IMessageMgr
    void* GetContext() override { return nullptr; }
    void SetContext(void* /*context*/) override {}

    void note(const char* call) { calls.append(QString::fromLatin1(call)); }
};
