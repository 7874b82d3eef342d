#pragma once

#include <QString>
#include <QStringList>

class QQuickItem;

namespace NelvoSDK {

//! \brief Implemented by the host: hears what happens in the BIM dialog and does what the user chose.
//!
//! Called on the GUI thread. The reserved operations are never called by the plug-in; they keep their
//! places in the interface.
class IPdsObserver
{
public:
    virtual void ReservedFirst() {}
    //! The dialog has become visible. `dialog` is the dialog's root item, owned by the host's item.
    virtual void OnBimDialogOpened(QQuickItem* dialog) = 0;
    //! The dialog has been closed; `dialog` has no visual parent any more.
    virtual void OnBimDialogClosed(QQuickItem* dialog) = 0;
    virtual void ReservedSecond() {}
    virtual void ReservedThird() {}
    virtual void ReservedFourth() {}
    virtual void ReservedFifth() {}
    //! The lists were emptied because a new one has been asked for.
    virtual void OnBimProjListCleared() = 0;
    //! A list has arrived and is about to replace the one shown.
    virtual void OnBimProjListSynced() = 0;
    //! The user wants these models (GUIDs of BIM projects) downloaded and imported.
    virtual void OnDownLoadBimProj(const QStringList& guids) = 0;
    virtual void ReservedSixth() {}
    virtual void ReservedSeventh() {}
    //! The user wants a simplified model of the BIM project `guid`: complete rather than fast when
    //! `completionFirst` is true.
    virtual void OnConvertSimplyMode(const QString& guid, bool completionFirst) = 0;

protected:
    ~IPdsObserver() = default;
};

} // namespace NelvoSDK
