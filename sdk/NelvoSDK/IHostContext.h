#pragma once

class QWebChannel;

namespace NelvoSDK {

//! \brief The object behind INelvoSDKPlugin::SetHostContext, implemented by the host.
//!
//! The plug-in calls GetWebChannel only; the reserved operations keep their places in the interface.
class IHostContext
{
public:
    virtual void ReservedFirst() {}
    virtual void ReservedSecond() {}
    virtual void ReservedThird() {}
    //! The host's web channel, not owned by the plug-in, or null if the host has none. Asked for by
    //! IPdsMgr::InitBimData, on the GUI thread.
    virtual QWebChannel* GetWebChannel() = 0;

protected:
    ~IHostContext() = default;
};

} // namespace NelvoSDK
