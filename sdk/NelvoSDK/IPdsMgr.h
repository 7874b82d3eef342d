#pragma once

#include <NelvoSDK/IPdsObserver.h>

#include <string>

class QQmlContext;
class QQuickItem;

namespace NelvoSDK {

class INelvoSDKPlugin;

//! \brief The BIM import dialog and its model lists. From INelvoSDKPlugin::GetPdsMgr.
//!
//! Calling order: SetPlugin, SetQmlContext, CreateBimDialog, then the rest. InitBimData needs SetPlugin
//! only, and a session in IProjectInfoMgr for the organisation tree to hold anything. GUI thread only,
//! except Attach and Detach.
class IPdsMgr
{
public:
    //! The plug-in's to call.
    virtual ~IPdsMgr() = default;

    //! What SetPlugin has kept.
    //! \return the pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Gives the manager its way to its neighbours. Required before InitBimData.
    //! \param plugin the plug-in object, not owned.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Fills the organisation tree, asks for the BIM list and publishes "bimObject" on the web channel
    //! of the host context, if there is one. Returns at once: the list comes later, on the GUI thread, to
    //! IPdsObserver::OnBimProjListSynced. One that does not come is logged and counts as an empty list. A
    //! second call appends the tree once more.
    virtual void InitBimData() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! Publishes `pdsMgr` and `orgModel` in the host's QML context.
    //! \param context not owned and not null; it must outlive what CreateBimDialog builds in it.
    virtual void SetQmlContext(QQmlContext* context) = 0;
    //! Builds the dialog, not yet visible. Needs SetQmlContext. One that fails to load, for want of the
    //! host's QML modules, leaves the open operations without effect; the log says "QQmlComponent: Component
    //! is not ready". A second call builds another one, which is used from then on; the first stays with its
    //! item.
    //! \param parent the host's item that owns the dialog from then on, so that the dialog goes with it.
    //!   Delete the dialog, a child of that item, before the window or the engine of its scene ends: its
    //!   bindings would log errors otherwise.
    virtual void CreateBimDialog(QQuickItem* parent) = 0;
    //! Places the dialog over the host's item and shows the BIM models. No effect without a dialog.
    virtual void OpenBimDialog() = 0;
    //! Places the dialog over the host's item and shows the DWG models. No effect without a dialog.
    virtual void OpenDWGBimDialog() = 0;
    //! Adds an observer; see ILoginActor::Attach.
    //! \param observer not owned and not null.
    virtual void Attach(IPdsObserver* observer) = 0;
    //! Removes an observer; see ILoginActor::Detach.
    //! \param observer one that is not attached is ignored.
    virtual void Detach(IPdsObserver* observer) = 0;
    //! Looks a model's name up in the lists read so far, of both kinds.
    //! \param guid the GUID as the lists spell it.
    //! \return the model's name, empty if the GUID is not known. Of two rows with one GUID the later counts.
    virtual std::wstring GetBimProjName(const std::wstring& guid) = 0;
};

} // namespace NelvoSDK
