#pragma once

#include "bim/bimobject.h"
#include "bim/bimprojworker.h"

#include <BVUtility/ISubject.h>
#include <NelvoSDK/IPdsMgr.h>

#include <QJsonArray>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QQmlContext>
#include <QQuickItem>
#include <QStringList>
#include <QThread>

#include <future>
#include <memory>

class QQmlComponent;

namespace BVUTILITY {
class CTreeModel;
}

namespace NelvoPlugin {

//! \brief The model behind the BIM dialog: its lists, its place in the host's scene, and the way to the host.
//!
//! Imports and converts nothing itself: what the user chooses goes to the observers. All of it runs on the
//! GUI thread but the fetches of the lists, which have a thread of their own from construction to
//! destruction, and the taking in of the names of each list, which has a helper thread. No list that changes
//! is shared: requests and answers cross by queued signals, and a list that has had its time goes to the
//! fetching thread once more, to be freed.
//!
//! An observer may delete this object within its call.
//!
//! QML and the host's scripts know the members by index too, so signals, methods and properties keep
//! their order.
class CPdsMgr final : public QObject,
                      public NelvoSDK::IPdsMgr,
                      public BVUTILITY::ISubject<NelvoSDK::IPdsObserver>
{
    Q_OBJECT
    //! What the dialog shows: the list that came last, or a part of it.
    Q_PROPERTY(QJsonArray bimProjList READ getBimProjList NOTIFY bimProjListChanged)
    //! "name" and "guid" of the PDS projects below the BIM project that getPdsProj found last.
    Q_PROPERTY(QJsonArray pdsProjList READ getPdsProjList NOTIFY pdsProjListChanged)
    Q_PROPERTY(bool bCheckedPds READ isPdsChecked NOTIFY bCheckedPdsChanged)
    Q_PROPERTY(QStringList checkList READ getCheckList NOTIFY checkListChanged)
    Q_PROPERTY(bool bViewDWGBimList READ isDWGBimListViewed NOTIFY bViewDWGBimListChanged)

public:
    //! Stages of a download, for the host's use; the plug-in only publishes the names.
    enum EDownLoadStatus { DownLoadInitial, DownLoading, DownLoadSuccess, DownLoadError };
    Q_ENUM(EDownLoadStatus)

    CPdsMgr();
    //! Waits for a fetch that is at work, however long it takes; its answer is dropped.
    ~CPdsMgr() override;
    Q_DISABLE_COPY(CPdsMgr)

    NelvoSDK::INelvoSDKPlugin* GetPlugin() override;
    void SetPlugin(NelvoSDK::INelvoSDKPlugin* plugin) override;
    void InitBimData() override;
    void ReservedHook() override;
    void SetQmlContext(QQmlContext* context) override;
    void CreateBimDialog(QQuickItem* parent) override;
    void OpenBimDialog() override;
    void OpenDWGBimDialog() override;
    void Attach(NelvoSDK::IPdsObserver* observer) override;
    void Detach(NelvoSDK::IPdsObserver* observer) override;
    std::wstring GetBimProjName(const std::wstring& guid) override;

    QJsonArray getBimProjList() const { return bimProjList; }
    QJsonArray getPdsProjList() const { return pdsProjList; }
    bool isPdsChecked() const { return !checkList.isEmpty(); }
    QStringList getCheckList() const { return checkList; }
    bool isDWGBimListViewed() const { return bViewDWGBimList; }

    //! The dialog has become visible.
    Q_INVOKABLE void onOpenDialog();
    //! The dialog is no longer visible; it leaves the scene and stays alive.
    Q_INVOKABLE void onCloseDialog();
    //! Asks for the BIM list. The lists are empty until it comes, and a page is told only then.
    Q_INVOKABLE void getBimProj();
    //! Asks for the DWG list; otherwise as getBimProj.
    Q_INVOKABLE void getDWGBimProj();
    //! Reads the PDS projects below a BIM project; one that the database lacks changes nothing.
    Q_INVOKABLE void getPdsProj(const QString& strGuid);
    //! Adds an entry to the check list, or takes one equal entry away. The list may hold duplicates.
    Q_INVOKABLE void checkPdsProj(const QString& strGuid, bool bCheck = true);
    //! Tells the host to download a BIM project.
    Q_INVOKABLE void downLoadBimProj(const QString& bimProj);
    //! Tells the host to convert a BIM project, completely rather than fast if `bCompletionFirst`.
    Q_INVOKABLE void convertSimplyMode(const QString& bimProj, bool bCompletionFirst);
    //! Shows the models of a department and of all below it; all models if `deptId` is empty.
    Q_INVOKABLE void searchBydeptId(const QString& deptId);

Q_SIGNALS:
    void bimProjListChanged();
    void pdsProjListChanged();
    void bCheckedPdsChanged();
    void bViewDWGBimListChanged();
    void sigGetBimProjList();
    void sigGetDWGBimProjList();
    void checkListChanged();

private:
    void onSyncBimProjList(const QJsonArray& array, bool bSuccess);
    //! Returns false if an observer has deleted this object.
    bool clearBimProjLists(bool bViewDWG);
    void takeInNames(QJsonArray list);
    void openDialog(const char* function);

    // In this order: what the worker needs is destroyed after it, and the thread after the worker.
    QJsonArray m_allBimProjList;
    QJsonArray bimProjList;
    QJsonArray pdsProjList;
    QString m_curBimGuid;
    QStringList checkList;
    QThread m_bimThread;
    CBimProjWorker m_bimWorker;
    QPointer<QQmlContext> m_qmlContext;
    //! Component and item belong to the host's item and go with it.
    QQmlComponent* m_dialogComponent = nullptr;
    QPointer<QQuickItem> m_dialogItem;
    QPointer<QQuickItem> m_parentItem;
    BIMObject m_bimObject;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    std::unique_ptr<BVUTILITY::CTreeModel> m_orgModel;
    bool bViewDWGBimList = false;
    //! Name of every model seen so far, by GUID; it only grows. Empty while a helper thread adds to it.
    QMap<QString, QString> m_bimNameMap;
    //! The map with the names of the last list, if it has not been asked for yet.
    std::future<QMap<QString, QString>> m_names;
};

} // namespace NelvoPlugin
