#pragma once

#include "login/loginview.h"

#include <NelvoSDK/ILoginMgr.h>

#include <memory>

namespace NelvoPlugin {

//! \brief Owns the login window and the login actor.
//!
//! Prepares the frameless window and what its pages find in their context; no page is loaded before
//! ShowLogin of the actor.
class CLoginMgr final : public NelvoSDK::ILoginMgr
{
public:
    CLoginMgr();

    void* GetContext() override;
    void SetContext(void* context) override;
    NelvoSDK::ILoginActor* GetLoginActor() override;
    void Start() override;

private:
    //! Signs in with the one argument there is and tells the program that gave it.
    void startFromCommandLine();

    LoginViewPointer m_view;
    std::unique_ptr<NelvoSDK::ILoginActor> m_loginActor;
    void* m_context = nullptr;
};

} // namespace NelvoPlugin
