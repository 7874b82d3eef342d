#pragma once

class QWebChannel;

namespace NelvoSDK {

//! \brief The object behind INelvoSDKPlugin::SetHostContext, implemented by the host.
//!
//! The plug-in calls GetWebChannel only; the reserved operations keep their places in the interface.
class IHostContext
{
public:
    //! Never called; keeps its place in the interface.
    virtual void ReservedFirst() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedSecond() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedThird() {}
    //! The channel on which IPdsMgr::InitBimData publishes "bimObject". Asked for there, on the GUI thread.
    //! \return the host's web channel, which stays the host's, or null if it has none.
    virtual QWebChannel* GetWebChannel() = 0;

protected:
    //! The plug-in never deletes it.
    ~IHostContext() = default;
};

} // namespace NelvoSDK
