#pragma once

#include <NelvoSDK/LoginSession.h>

namespace NelvoSDK {

//! \brief Implemented and owned by the host: receives the results of sign-ins.
//!
//! Attach it with ILoginActor::Attach. The plug-in calls both operations on the GUI thread and does not catch
//! exceptions that leave them. Inside a call, the host may attach and detach observers and may call
//! INelvoSDKPlugin::Initialize and Shutdown; docs/integration.md lists what else is allowed.
class ILoginObserver
{
public:
    //! The login window has closed and the session is ready. Also called if the enterprise's services could
    //! not be reached: the session is then the previous one, or consists of empty strings (see
    //! LoginSession::loggedIn). Also called after OnLoginFailed if a sign-in from the command line was
    //! rejected.
    //! \param session valid during the call: copy it.
    virtual void OnLoginSucceeded(const LoginSession& session) = 0;

    //! A sign-in was rejected, or the sign-in service did not reply. The login window shows the reason and
    //! stays open for another attempt. Also called if the application quits before the service has replied.
    //! After a sign-in from the command line (see ILoginMgr::Start) OnLoginSucceeded follows.
    virtual void OnLoginFailed() = 0;

protected:
    //! The plug-in never deletes an observer.
    ~ILoginObserver() = default;
};

} // namespace NelvoSDK
