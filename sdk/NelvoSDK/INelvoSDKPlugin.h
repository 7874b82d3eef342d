#pragma once

//! \file
//! \brief The library's export and the interface that it returns.

#include <QtGlobal>

#include <string>

//! Exports GetNelvoSDKPlugin in the library's build and imports it everywhere else.
#ifdef NELVO_PLUGIN_BUILD
#define NELVO_SDK_EXPORT Q_DECL_EXPORT
#else
#define NELVO_SDK_EXPORT Q_DECL_IMPORT
#endif

//! \brief The interfaces and records between the plug-in and its host.
namespace NelvoSDK {

class ILoginMgr;
class IMessageMgr;
class IPdsMgr;
class IProjectInfoMgr;

//! \brief The plug-in object, which owns the managers and returns them.
//!
//! A host calls, in this order: GetNelvoSDKPlugin; SetHostContext (optional); Initialize, after it has
//! created a QGuiApplication; the getters and the operations of the managers; and Shutdown, before the
//! QGuiApplication ends. The plug-in owns the managers: never delete a manager. After Shutdown, use the
//! message manager only. GUI thread only, unless an operation says otherwise.
class INelvoSDKPlugin
{
public:
    //! Creates the managers. Replaces existing managers, including the message manager: pointers to them
    //! become invalid. Reads the address files and the installed version beside the executable, and prepares
    //! the login window without showing it. A file that cannot be read is only logged, or ignored.
    //! \return always true.
    virtual bool Initialize() = 0;
    //! Deletes the login, project and PDS managers. The message manager stays usable until the process ends.
    //!
    //! May be called inside an observer's call, in a slot of the login window or of the updater, and while
    //! another call waits for a service: that call then returns false, or has no further effect. Waits for a
    //! list of models that is being fetched. Does nothing if there are no managers. The end of the
    //! QGuiApplication deletes the managers that the host has not shut down.
    //! \return always true.
    virtual bool Shutdown() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! The version of the loaded library. Any thread, at any time. NELVO_SDK_VERSION is the version of the
    //! headers.
    //! \return "1.0.0".
    virtual std::wstring GetVersion() = 0;
    //! The manager of the sign-in.
    //! \return the login manager, owned by the plug-in; null before Initialize and after Shutdown.
    virtual ILoginMgr* GetLoginMgr() = 0;
    //! The manager of scene projects and of the organisation tree.
    //! \return the project information manager, owned by the plug-in; null before Initialize and after
    //!   Shutdown.
    virtual IProjectInfoMgr* GetProjectInfoMgr() = 0;
    //! The manager of the BIM import, called the PDS manager.
    //! \return the PDS manager, owned by the plug-in; null before Initialize and after Shutdown.
    virtual IPdsMgr* GetPdsMgr() = 0;
    //! The manager that passes short texts to observers.
    //! \return the message manager, owned by the plug-in; null before Initialize.
    virtual IMessageMgr* GetMessageMgr() { return nullptr; }
    //! The host's context.
    //! \return the pointer of the last SetHostContext, null at first.
    virtual void* GetHostContext() { return hostContext; }
    //! Sets the host's context. At any time. IPdsMgr::InitBimData uses it.
    //! \param context an `IHostContext*` as `void*`, not owned, or null. Convert a pointer to your own class
    //!   to `IHostContext*` first.
    virtual void SetHostContext(void* context) { hostContext = context; }

    //! Never delete the plug-in object: the library owns it.
    virtual ~INelvoSDKPlugin() = default;

protected:
    //! The pointer of the last SetHostContext.
    void* hostContext = nullptr;
};

} // namespace NelvoSDK

//! \brief Returns the plug-in object. This is the library's only export.
//!
//! Any thread. Cannot fail. Hosts that load the library at run time resolve the symbol "GetNelvoSDKPlugin";
//! NelvoSDK::LoadPlugin does so.
//! \return the plug-in object, the same at every call; owned by the library and valid until the process ends.
extern "C" NELVO_SDK_EXPORT NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin();

namespace NelvoSDK {
//! Type of GetNelvoSDKPlugin, to cast the result of QLibrary::resolve.
using GetNelvoSDKPluginFunction = INelvoSDKPlugin* (*)();
} // namespace NelvoSDK
