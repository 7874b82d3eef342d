#pragma once

#include <NelvoSDK/IMessageObserver.h>

namespace NelvoSDK {

//! \brief A broadcast hub for short texts. From INelvoSDKPlugin::GetMessageMgr; outlives Shutdown.
//!
//! A notification runs on the caller's thread and returns when every observer has returned. It takes
//! no lock: do not attach or detach while one is running, neither from another thread nor from within
//! an observer. An exception that leaves an observer keeps the remaining ones from being reached and
//! goes on to the notifier.
class IMessageMgr
{
public:
    //! The plug-in's to call.
    virtual ~IMessageMgr() = default;

    //! What SetContext has kept.
    //! \return the pointer of the last SetContext, null at first.
    virtual void* GetContext() = 0;
    //! Keeps a pointer for the host.
    //! \param context anything; the plug-in neither looks at it nor owns it.
    virtual void SetContext(void* context) = 0;

    //! Calls IMessageObserver::OnMessageFirst on each attached observer.
    //! \param text copied before the first call; it may be empty.
    virtual void NotifyFirst(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageSecond on each attached observer.
    //! \param text copied before the first call; it may be empty.
    virtual void NotifySecond(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageThird on each attached observer.
    //! \param text copied before the first call; it may be empty.
    virtual void NotifyThird(const QString& text) = 0;

    //! Adds an observer. Any thread.
    //! \param observer not owned and not null. Adding one twice has no effect.
    virtual void Attach(IMessageObserver* observer) = 0;
    //! Removes an observer. Any thread.
    //! \param observer one that is not attached is ignored.
    virtual void Detach(IMessageObserver* observer) = 0;
};

} // namespace NelvoSDK
