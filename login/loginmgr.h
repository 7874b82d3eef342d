#pragma once

#include "login/loginview.h"

#include <NelvoSDK/ILoginMgr.h>

#include <memory>

namespace NelvoPlugin {

//! \brief Owns the login window and the login actor.
//!
//! Prepares the frameless window and the context of its pages. ShowLogin of the actor loads the first page.
class CLoginMgr final : public NelvoSDK::ILoginMgr
{
public:
    CLoginMgr();

    void* GetContext() override;
    void SetContext(void* context) override;
    NelvoSDK::ILoginActor* GetLoginActor() override;
    void Start() override;

private:
    //! Signs in with the only argument and notifies the calling program.
    void startFromCommandLine();

    LoginViewPointer m_view;
    std::unique_ptr<NelvoSDK::ILoginActor> m_loginActor;
    void* m_context = nullptr;
};

} // namespace NelvoPlugin
