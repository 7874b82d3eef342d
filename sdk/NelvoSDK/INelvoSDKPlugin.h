#pragma once

#include <QtGlobal>

#include <string>

#ifdef NELVO_PLUGIN_BUILD
#define NELVO_SDK_EXPORT Q_DECL_EXPORT
#else
#define NELVO_SDK_EXPORT Q_DECL_IMPORT
#endif

namespace NelvoSDK {

class ILoginMgr;
class IMessageMgr;
class IPdsMgr;
class IProjectInfoMgr;

//! \brief The plug-in object: the way to its managers.
//!
//! A host calls, in this order: GetNelvoSDKPlugin, SetHostContext (optional), Initialize once a
//! QGuiApplication exists, the getters and the managers' operations, and Shutdown while the
//! QGuiApplication still exists. The managers belong to the plug-in: never delete one, and use none
//! after Shutdown except the message manager. GUI thread only, unless said otherwise.
class INelvoSDKPlugin
{
public:
    //! Creates the managers; existing ones are replaced, and pointers to them become invalid. Reads the
    //! address files beside the executable and prepares the login window without showing it. Always true.
    //! To replace managers, see Shutdown for when not to.
    virtual bool Initialize() = 0;
    //! Deletes the login, project and PDS managers; the message manager stays usable until the process
    //! ends. Requires an Initialize before it, and may not be called twice for one. Not from within an
    //! observer's call, and not while a sign-in waits for a service: what waits would come back to objects
    //! that are gone. Without it the managers go with the QGuiApplication. Always true.
    virtual bool Shutdown() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! The plug-in's version, "1.0.0". At any time.
    virtual std::wstring GetVersion() = 0;
    //! The login manager, or null before Initialize and after Shutdown.
    virtual ILoginMgr* GetLoginMgr() = 0;
    //! The project information manager, or null before Initialize and after Shutdown.
    virtual IProjectInfoMgr* GetProjectInfoMgr() = 0;
    //! The PDS manager, or null before Initialize and after Shutdown.
    virtual IPdsMgr* GetPdsMgr() = 0;
    //! The message manager, or null before Initialize.
    virtual IMessageMgr* GetMessageMgr() { return nullptr; }
    //! The pointer of the last SetHostContext, null at first.
    virtual void* GetHostContext() { return hostContext; }
    //! Gives the plug-in the host's context: an IHostContext* as void*, not owned, or null. At any time.
    virtual void SetHostContext(void* context) { hostContext = context; }

    virtual ~INelvoSDKPlugin() = default;

protected:
    void* hostContext = nullptr;
};

} // namespace NelvoSDK

//! \brief The library's only export: the process-wide plug-in object, the same at every call.
//!
//! Cannot fail. Any thread. Owned by the library, which keeps it to the end of the process. Hosts that
//! load the library at run time resolve the symbol "GetNelvoSDKPlugin".
extern "C" NELVO_SDK_EXPORT NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin();

namespace NelvoSDK {
//! Type of GetNelvoSDKPlugin, for QLibrary::resolve.
using GetNelvoSDKPluginFunction = INelvoSDKPlugin* (*)();
} // namespace NelvoSDK
