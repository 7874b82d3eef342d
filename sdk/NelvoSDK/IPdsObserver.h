#pragma once

#include <QString>
#include <QStringList>

class QQuickItem;

namespace NelvoSDK {

//! \brief Implemented by the host: hears what happens in the BIM dialog and does what the user chose.
//!
//! Called on the GUI thread. Arguments are valid for the time of the call.
class IPdsObserver
{
public:
    //! Never called; keeps its place in the interface.
    virtual void ReservedFirst() {}
    //! The dialog has become visible.
    //! \param dialog the dialog's root item, owned by the item of IPdsMgr::CreateBimDialog.
    virtual void OnBimDialogOpened(QQuickItem* dialog) = 0;
    //! The dialog has been closed.
    //! \param dialog the dialog's root item, which has no visual parent any more and is kept.
    virtual void OnBimDialogClosed(QQuickItem* dialog) = 0;
    //! Never called; keeps its place in the interface.
    virtual void ReservedSecond() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedThird() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedFourth() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedFifth() {}
    //! The lists were emptied because a new one has been asked for.
    virtual void OnBimProjListCleared() = 0;
    //! A list has arrived, or failed to, and is about to replace the one shown.
    virtual void OnBimProjListSynced() = 0;
    //! The user wants models downloaded and imported.
    //! \param guids GUIDs of BIM projects.
    virtual void OnDownLoadBimProj(const QStringList& guids) = 0;
    //! Never called; keeps its place in the interface.
    virtual void ReservedSixth() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedSeventh() {}
    //! The user wants a simplified model.
    //! \param guid GUID of the BIM project.
    //! \param completionFirst whether the model should be complete rather than soon ready.
    virtual void OnConvertSimplyMode(const QString& guid, bool completionFirst) = 0;

protected:
    //! The plug-in never deletes it.
    ~IPdsObserver() = default;
};

} // namespace NelvoSDK
