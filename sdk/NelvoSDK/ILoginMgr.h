#pragma once

#include <NelvoSDK/ILoginActor.h>

namespace NelvoSDK {

//! \brief Owns the login window and the login actor. From INelvoSDKPlugin::GetLoginMgr.
//!
//! GUI thread only.
class ILoginMgr
{
public:
    //! What SetContext has kept.
    //! \return the pointer of the last SetContext, null at first.
    virtual void* GetContext() = 0;
    //! Keeps a pointer for the host.
    //! \param context anything; the plug-in neither looks at it nor owns it.
    virtual void SetContext(void* context) = 0;

    //! The sign-in itself, to attach observers to.
    //! \return the login actor, never null; owned by the plug-in and valid until INelvoSDKPlugin::Shutdown.
    virtual ILoginActor* GetLoginActor() = 0;

    //! Starts the sign-in. Call it once, after an ILoginObserver has been attached to the login actor:
    //! the outcome is told to observers only.
    //!
    //! Call it from the event loop, that is, once QCoreApplication::exec runs: from a slot, a timer or a
    //! queued call, such as `QTimer::singleShot(0, …)` before exec. Called earlier, a sign-in that fails asks
    //! an application to quit that isn't running yet. Qt ignores that, and the host stays open without a
    //! session.
    //!
    //! Shows the login window, unless the application was started with exactly one command-line argument:
    //! that one is taken as a sign-in without a window, and none is shown whatever the argument holds. Hosts
    //! with options of their own should therefore never be started with exactly one argument. A sign-in
    //! without a window runs to its end inside this call, the observers' calls included; one that fails is
    //! logged as "login failed:" and asks the application to quit. It goes to its end all the same: observers
    //! hear ILoginObserver::OnLoginFailed and then OnLoginSucceeded, as a rule with empty texts.
    //!
    //! Closing the login window by its close button ends the application (QCoreApplication::quit).
    //!
    //! A sign-in blocks the page that asked for it while the GUI thread's events go on, without a time
    //! limit. An application that quits while an enterprise is being entered ends when the service has
    //! answered; and at every orderly quit a logout call goes out, which is waited for as well.
    virtual void Start() = 0;

    //! The plug-in's to call.
    virtual ~ILoginMgr() = default;
};

} // namespace NelvoSDK
