#pragma once

#include <NelvoSDK/LoginSession.h>

namespace NelvoSDK {

//! \brief Implemented by the host: hears how a sign-in ended.
//!
//! Attach it with ILoginActor::Attach. The plug-in never owns or deletes an observer. Both operations
//! are called on the GUI thread; an exception that leaves one of them is not caught by the plug-in.
//!
//! From within a call, do not attach or detach observers, and call neither INelvoSDKPlugin::Initialize nor
//! Shutdown: a page of the login window is still at work, and Qt ends a process in which it is destroyed
//! then. Do so later, through the event loop.
class ILoginObserver
{
public:
    //! The login window has closed and the session is ready. Also called when the enterprise's services could
    //! not be reached; the texts are then empty or those of an earlier sign-in (see LoginSession::loggedIn).
    //! Also called after OnLoginFailed when a sign-in without a window was refused.
    //! \param session valid for the time of the call: copy it.
    virtual void OnLoginSucceeded(const LoginSession& session) = 0;

    //! A sign-in attempt was refused or the sign-in service did not answer. The user has been shown the
    //! reason in the login window, which stays open for another attempt. Also called when the application
    //! quits while the service has not answered yet, and for a sign-in without a window (see
    //! ILoginMgr::Start), which OnLoginSucceeded follows all the same.
    virtual void OnLoginFailed() = 0;

protected:
    //! The plug-in never deletes it.
    ~ILoginObserver() = default;
};

} // namespace NelvoSDK
