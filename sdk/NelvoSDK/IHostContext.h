#pragma once

class QWebChannel;

namespace NelvoSDK {

//! \brief The host's context, passed to INelvoSDKPlugin::SetHostContext. Implemented and owned by the host.
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
    //! The channel on which IPdsMgr::InitBimData publishes "bimObject". Called by InitBimData, on the GUI
    //! thread.
    //! \return the web channel, owned by the host, or null if the host has none.
    virtual QWebChannel* GetWebChannel() = 0;

protected:
    //! The plug-in never deletes the context.
    ~IHostContext() = default;
};

} // namespace NelvoSDK
