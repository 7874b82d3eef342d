#pragma once

#include <NelvoSDK/ILoginActor.h>

namespace NelvoSDK {

//! \brief Owns the login window and the login actor. From INelvoSDKPlugin::GetLoginMgr.
//!
//! GUI thread only.
class ILoginMgr
{
public:
    //! The host's pointer.
    //! \return the pointer of the last SetContext, null at first.
    virtual void* GetContext() = 0;
    //! Stores a pointer for the host.
    //! \param context any pointer; the plug-in neither uses nor owns it.
    virtual void SetContext(void* context) = 0;

    //! The object to attach login observers to.
    //! \return the login actor, never null; owned by the plug-in and valid until INelvoSDKPlugin::Shutdown.
    virtual ILoginActor* GetLoginActor() = 0;

    //! Starts the sign-in. Attach an ILoginObserver to the login actor first: only observers receive the
    //! result. Call Start once.
    //!
    //! Call it from the event loop, that is, while QCoreApplication::exec runs: from a slot, a timer or a
    //! queued call, such as `QTimer::singleShot(0, …)` before exec. A sign-in from the command line that
    //! fails asks the application to quit. Qt ignores this before exec, and the host would stay open without
    //! a session.
    //!
    //! Start shows the login window. Exception: if the application was started with exactly one command-line
    //! argument, Start treats this argument as a sign-in from the command line, whatever it contains, and
    //! shows no window. So never start a host that has options of its own with exactly one argument.
    //!
    //! A sign-in from the command line ends inside this call, including the calls of the observers. If it
    //! fails, the library logs "login failed:" and asks the application to quit. The sign-in continues to its
    //! end: observers receive ILoginObserver::OnLoginFailed and then OnLoginSucceeded, usually with empty
    //! strings.
    //!
    //! The close button of the login window ends the application (QCoreApplication::quit).
    //!
    //! A sign-in blocks the page that started it, without a timeout; the GUI thread processes events
    //! meanwhile. If the application quits while an enterprise is being entered, it ends when the service has
    //! replied. At every orderly quit the library sends a logout and waits for its reply.
    virtual void Start() = 0;

    //! Only the plug-in deletes the manager.
    virtual ~ILoginMgr() = default;
};

} // namespace NelvoSDK
