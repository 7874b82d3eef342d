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
    //! The old lists are empty, and the request for a new list follows. The dialog keeps its rows until that
    //! list arrives.
    virtual void OnBimProjListCleared() = 0;
    //! A list has arrived; it is empty after a failure. The dialog shows it after this call.
    virtual void OnBimProjListSynced() = 0;
    //! The user wants the host to download and import a model or a drawing.
    //! \param guids exactly one GUID.
    virtual void OnDownLoadBimProj(const QStringList& guids) = 0;
    //! Never called; keeps its place in the interface.
    virtual void ReservedSixth() {}
    //! Never called; keeps its place in the interface.
    virtual void ReservedSeventh() {}
    //! The user wants the host to convert a model to an outline model, which is simplified.
    //! \param guid GUID of the model.
    //! \param completionFirst true if the outline model should be complete, false if the conversion should be
    //!   fast.
    virtual void OnConvertSimplyMode(const QString& guid, bool completionFirst) = 0;

protected:
    //! The plug-in never deletes an observer.
    ~IPdsObserver() = default;
};

} // namespace NelvoSDK
