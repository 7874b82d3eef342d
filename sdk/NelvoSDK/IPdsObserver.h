#pragma once

#include <QString>
#include <QStringList>

class QQuickItem;

namespace NelvoSDK {

//! \brief Implemented and owned by the host: receives the events of the BIM dialog and imports the models
//! that the user chooses.
//!
//! Called on the GUI thread. Arguments are valid during the call.
class IPdsObserver
{
public:
    //! Never called; keeps its place in the interface.
    virtual void ReservedFirst() {}
    //! The dialog has become visible.
    //! \param dialog the dialog's root item, owned by the item that was passed to IPdsMgr::CreateBimDialog.
    virtual void OnBimDialogOpened(QQuickItem* dialog) = 0;
    //! The dialog has been closed.
    //! \param dialog the dialog's root item. It no longer has a visual parent, and it is not deleted.
    virtual void OnBimDialogClosed(QQuickItem* dialog) = 0;
    //! Never called; keeps its place in the interface.
    virtual void ReservedSecond() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedThird() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedFourth() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedFifth() {}
    //! A new list was requested, and the old lists are empty. The dialog shows its rows until the list
    //! arrives.
    virtual void OnBimProjListCleared() = 0;
    //! A list has arrived; it is empty after a failure. The dialog shows it after this call.
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
    //! \param completionFirst true if the model should be complete, false if it should be ready soon.
    virtual void OnConvertSimplyMode(const QString& guid, bool completionFirst) = 0;

protected:
    //! The plug-in never deletes an observer.
    ~IPdsObserver() = default;
};

} // namespace NelvoSDK
