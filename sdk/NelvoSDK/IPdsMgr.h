#pragma once

#include <NelvoSDK/IPdsObserver.h>

#include <string>

class QQmlContext;
class QQuickItem;

namespace NelvoSDK {

class INelvoSDKPlugin;

//! \brief The BIM import dialog and its model lists. From INelvoSDKPlugin::GetPdsMgr.
//!
//! Calling order: SetPlugin, SetQmlContext, CreateBimDialog, then the other operations. InitBimData needs
//! SetPlugin only; the organisation tree is empty until IProjectInfoMgr has a session. GUI thread only,
//! except Attach and Detach.
class IPdsMgr
{
public:
    //! Only the plug-in deletes the manager.
    virtual ~IPdsMgr() = default;

    //! The plug-in object.
    //! \return the pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Sets the plug-in object, through which the manager reaches the other managers and the host's context.
    //! Required before InitBimData.
    //! \param plugin the plug-in object, not owned.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Fills the organisation tree, requests the list of BIM models, and publishes "bimObject" on the web
    //! channel of the host's context if there is one. Returns at once. When the list has arrived, the plug-in
    //! calls IPdsObserver::OnBimProjListSynced on the GUI thread. If the request fails, the library logs it
    //! and the list is empty. A second call appends the tree once more.
    virtual void InitBimData() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! Publishes `pdsMgr` and `orgModel` in the host's QML context.
    //! \param context not owned and not null; it must outlive the dialog of CreateBimDialog.
    virtual void SetQmlContext(QQmlContext* context) = 0;
    //! Creates the dialog, hidden. Does nothing before SetQmlContext. If the host's QML modules are missing,
    //! the dialog fails to load, Qt logs "QQmlComponent: Component is not ready", and the open operations do
    //! nothing. A second call creates another dialog, which the open operations use from then on; the first
    //! dialog remains a child of its item.
    //! \param parent the host's item, not null. It owns the dialog: the dialog is its child and is deleted
    //!   with it. Delete the dialog before Shutdown and before the window or the engine of its scene ends;
    //!   otherwise its bindings log errors.
    virtual void CreateBimDialog(QQuickItem* parent) = 0;
    //! Shows the dialog over the host's item, with the BIM models. No effect without a dialog.
    virtual void OpenBimDialog() = 0;
    //! Shows the dialog over the host's item, with the DWG models. No effect without a dialog.
    virtual void OpenDWGBimDialog() = 0;
    //! Adds an observer; see ILoginActor::Attach.
    //! \param observer not owned and not null.
    virtual void Attach(IPdsObserver* observer) = 0;
    //! Removes an observer; see ILoginActor::Detach.
    //! \param observer ignored if it is not attached.
    virtual void Detach(IPdsObserver* observer) = 0;
    //! Looks up a name in all lists of BIM and DWG models received so far. Sends no request.
    //! \param guid the GUID as the lists spell it.
    //! \return the model's name, empty if the GUID is unknown. If two rows have the same GUID, the later row
    //!   counts.
    virtual std::wstring GetBimProjName(const std::wstring& guid) = 0;
};

} // namespace NelvoSDK
