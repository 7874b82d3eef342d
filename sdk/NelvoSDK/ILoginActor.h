#pragma once

#include <NelvoSDK/ILoginObserver.h>

namespace NelvoSDK {

//! \brief The sign-in itself, as the host sees it. From ILoginMgr::GetLoginActor; owned by the plug-in.
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

    //! Shows the login window on its form page, with the accounts that were used before. May be called
    //! again after a sign-in to let the user sign in anew. While a sign-in waits for a service, and from
    //! within an observer's call, it takes effect once that has ended. A page that fails to load is a fault
    //! of the installation (see docs/troubleshooting.md) and ends the process.
    virtual void ShowLogin() = 0;

    //! Adds an observer. Any thread, at any time; see BVUTILITY::ISubject. Observers are called in no
    //! particular order.
    //! \param observer not owned and not null. Adding one twice has no effect.
    virtual void Attach(ILoginObserver* observer) = 0;
    //! Removes an observer. Any thread, at any time, also in a call of its own. Detach before you delete the
    //! observer.
    //! \param observer one that is not attached is ignored.
    virtual void Detach(ILoginObserver* observer) = 0;

    //! The plug-in's to call.
    virtual ~ILoginActor() = default;
};

} // namespace NelvoSDK
