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
    virtual ~IMessageMgr() = default;

    //! The pointer of the last SetContext, null at first.
    virtual void* GetContext() = 0;
    //! Keeps a pointer for the host. The plug-in neither looks at it nor owns it.
    virtual void SetContext(void* context) = 0;

    //! Calls IMessageObserver::OnMessageFirst with a copy of `text` on each attached observer.
    virtual void NotifyFirst(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageSecond with a copy of `text` on each attached observer.
    virtual void NotifySecond(const QString& text) = 0;
    //! Calls IMessageObserver::OnMessageThird with a copy of `text` on each attached observer.
    virtual void NotifyThird(const QString& text) = 0;

    //! Adds an observer, not owned and not null. Adding one twice has no effect. Any thread.
    virtual void Attach(IMessageObserver* observer) = 0;
    //! Removes an observer; one that is not attached is ignored. Any thread.
    virtual void Detach(IMessageObserver* observer) = 0;
};

} // namespace NelvoSDK
