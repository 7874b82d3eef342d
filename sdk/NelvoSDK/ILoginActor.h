#pragma once

#include <NelvoSDK/ILoginObserver.h>

namespace NelvoSDK {

//! \brief The login window and the observers of sign-ins. From ILoginMgr::GetLoginActor; owned by the
//! plug-in.
//!
//! GUI thread only, except Attach and Detach.
class ILoginActor
{
public:
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedFirst() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedSecond() = 0;
    //! Keeps its place in the interface.
    //! \return false.
    virtual bool ReservedFlag() = 0;

    //! Shows the login window with its form page and the remembered accounts. Call it after a sign-in to let
    //! the user sign in again. While a sign-in waits for a service, or inside an observer's call, the
    //! window is shown when the event loop runs again. If a page fails to load, the installation is faulty
    //! (see docs/troubleshooting.md) and the process ends.
    virtual void ShowLogin() = 0;

    //! Adds an observer. Any thread, at any time; see BVUTILITY::ISubject. Observers are called in no
    //! particular order. Cannot fail.
    //! \param observer not owned and not null. Adding an observer twice has no effect.
    virtual void Attach(ILoginObserver* observer) = 0;
    //! Removes an observer. Any thread, at any time, also inside a call of that observer. Detach an observer
    //! before you delete it. Cannot fail.
    //! \param observer ignored if it is not attached.
    virtual void Detach(ILoginObserver* observer) = 0;

    //! Only the plug-in deletes the actor.
    virtual ~ILoginActor() = default;
};

} // namespace NelvoSDK
