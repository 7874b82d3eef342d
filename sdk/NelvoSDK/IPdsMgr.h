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
    virtual ~IPdsMgr() = default;

    //! The pointer of the last SetPlugin, null at first.
    virtual INelvoSDKPlugin* GetPlugin() = 0;
    //! Gives the manager its way to its neighbours. Not owned; required before InitBimData.
    virtual void SetPlugin(INelvoSDKPlugin* plugin) = 0;
    //! Fills the organisation tree, asks for the BIM list and publishes "bimObject" on the web channel
    //! of the host context, if there is one. A second call appends the tree once more.
    virtual void InitBimData() = 0;
    //! Does nothing; keeps its place in the interface.
    virtual void ReservedHook() = 0;
    //! Publishes `pdsMgr` and `orgModel` in the host's QML context. Not owned.
    virtual void SetQmlContext(QQmlContext* context) = 0;
    //! Builds the dialog as a child of the host's item, with which it goes, not yet visible. Needs
    //! SetQmlContext. A dialog that fails to load leaves the open operations without effect. A second call
    //! builds another one, which is used from then on; the first stays with its item.
    virtual void CreateBimDialog(QQuickItem* parent) = 0;
    //! Places the dialog over the host's item and shows the BIM models.
    virtual void OpenBimDialog() = 0;
    //! Places the dialog over the host's item and shows the DWG models.
    virtual void OpenDWGBimDialog() = 0;
    //! Adds an observer, not owned and not null; see ILoginActor::Attach.
    virtual void Attach(IPdsObserver* observer) = 0;
    //! Removes an observer; see ILoginActor::Detach.
    virtual void Detach(IPdsObserver* observer) = 0;
    //! The name of the model `guid` in the lists read so far, of both kinds, or an empty text. Of two rows
    //! with one GUID the later counts.
    virtual std::wstring GetBimProjName(const std::wstring& guid) = 0;
};

} // namespace NelvoSDK
