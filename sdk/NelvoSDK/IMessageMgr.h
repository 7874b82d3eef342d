#pragma once

#include <NelvoSDK/IMessageObserver.h>

namespace NelvoSDK {

//! \brief Passes short texts to all attached observers. From INelvoSDKPlugin::GetMessageMgr; remains valid
//! after INelvoSDKPlugin::Shutdown.
//!
//! A notification calls the observers on the caller's thread and returns when every observer has returned. If
//! an exception leaves an observer, the notification ends: it does not call the remaining observers, and its
//! caller gets the exception.
class IMessageMgr
{
public:
    //! Only the plug-in deletes the manager.
    virtual ~IMessageMgr() = default;

    //! The host's pointer.
    //! \return the pointer of the last SetContext, null at first.
    virtual void* GetContext() = 0;
    //! Stores a pointer for the host.
    //! \param context any pointer; the plug-in neither uses nor owns it.
    virtual void SetContext(void* context) = 0;

    //! Calls IMessageObserver::OnMessageFirst of each attached observer. Any thread.
    //! \param text copied before the first call; may be empty.
    virtual void NotifyFirst(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageSecond of each attached observer. Any thread.
    //! \param text copied before the first call; may be empty.
    virtual void NotifySecond(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageThird of each attached observer. Any thread.
    //! \param text copied before the first call; may be empty.
    virtual void NotifyThird(const QString& text) = 0;

    //! Adds an observer. Any thread, at any time; see BVUTILITY::ISubject. Cannot fail.
    //! \param observer not owned and not null. Adding an observer twice has no effect.
    virtual void Attach(IMessageObserver* observer) = 0;
    //! Removes an observer. Any thread, at any time, also inside a call of that observer. Detach an observer
    //! before you delete it. Cannot fail.
    //! \param observer ignored if it is not attached.
    virtual void Detach(IMessageObserver* observer) = 0;
};

} // namespace NelvoSDK
