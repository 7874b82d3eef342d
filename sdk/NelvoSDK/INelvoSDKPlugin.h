#pragma once

//! \file
//! \brief The library's export, and the interface that it leads to.

#include <QtGlobal>

#include <string>

//! How the export is declared: exported where the library is built, imported everywhere else.
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

//! \brief The plug-in object: the way to its managers.
//!
//! A host calls, in this order: GetNelvoSDKPlugin, SetHostContext (optional), Initialize once a
//! QGuiApplication exists, the getters and the managers' operations, and Shutdown while the
//! QGuiApplication still exists. The managers belong to the plug-in: never delete one, and use none
//! after Shutdown except the message manager. GUI thread only, unless said otherwise.
class INelvoSDKPlugin
{
public:
    //! Creates the managers; existing ones are replaced as by Shutdown, and pointers to them become invalid.
    //! Reads the address files and the installed version beside the executable, and prepares the login window
    //! without showing it.
    //! \return always true: a file that can't be read is logged at most.
    virtual bool Initialize() = 0;
    //! Deletes the login, project and PDS managers; the message manager stays usable until the process
    //! ends. May be called from within an observer's call, from a slot of the login window or the updater,
    //! and while a call waits for a service: that call then returns false, or does nothing more. Waits for a
    //! list of models that is being fetched. Without managers it does nothing. Managers that are left when
    //! the QGuiApplication ends are deleted with it.
    //! \return always true.
    virtual bool Shutdown() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! The plug-in's version. At any time.
    //! \return "1.0.0".
    virtual std::wstring GetVersion() = 0;
    //! The sign-in. Owned by the plug-in.
    //! \return the login manager, or null before Initialize and after Shutdown.
    virtual ILoginMgr* GetLoginMgr() = 0;
    //! Scene projects and organisation. Owned by the plug-in.
    //! \return the project information manager, or null before Initialize and after Shutdown.
    virtual IProjectInfoMgr* GetProjectInfoMgr() = 0;
    //! The BIM import. Owned by the plug-in.
    //! \return the PDS manager, or null before Initialize and after Shutdown.
    virtual IPdsMgr* GetPdsMgr() = 0;
    //! The hub for short texts. Owned by the plug-in.
    //! \return the message manager, or null before Initialize.
    virtual IMessageMgr* GetMessageMgr() { return nullptr; }
    //! What SetHostContext has kept.
    //! \return the pointer of the last SetHostContext, null at first.
    virtual void* GetHostContext() { return hostContext; }
    //! Gives the plug-in the host's context. At any time; it is asked by IPdsMgr::InitBimData.
    //! \param context an `IHostContext*` as `void*`, not owned, or null. Convert it to `IHostContext*` before
    //!   it becomes a `void*` if it is a pointer to your own class.
    virtual void SetHostContext(void* context) { hostContext = context; }

    //! The library's to call, at the end of the process.
    virtual ~INelvoSDKPlugin() = default;

protected:
    //! What SetHostContext has kept.
    void* hostContext = nullptr;
};

} // namespace NelvoSDK

//! \brief The library's only export: the way to the plug-in object.
//!
//! Cannot fail. Any thread. Hosts that load the library at run time resolve the symbol "GetNelvoSDKPlugin".
//! \return the process-wide plug-in object, the same at every call; owned by the library, which keeps it to
//!   the end of the process.
extern "C" NELVO_SDK_EXPORT NelvoSDK::INelvoSDKPlugin* GetNelvoSDKPlugin();

namespace NelvoSDK {
//! Type of GetNelvoSDKPlugin, for QLibrary::resolve.
using GetNelvoSDKPluginFunction = INelvoSDKPlugin* (*)();
} // namespace NelvoSDK
