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

class ModelColumns;

//! \brief The model behind the BIM dialog: its lists, its item in the host's scene, and the calls to the
//!   host.
//!
//! Imports and converts nothing itself: the observers receive the user's choice. Runs on the GUI thread,
//! except the fetches of the lists, which have a thread from construction to destruction, and the storing of
//! the names of each list, which has a helper thread. The threads share no list that changes: requests and
//! replies are passed by queued signals, and replaced lists are freed on the worker thread.
//!
//! An observer may delete this object inside its call.
//!
//! QML and the host's scripts also use the index of members, so the order of signals, methods and properties
//! is fixed.
class CPdsMgr final : public QObject,
                      public NelvoSDK::IPdsMgr,
                      public BVUTILITY::ISubject<NelvoSDK::IPdsObserver>
{
    Q_OBJECT
    //! The shown list: all of the last list or a part of it.
    Q_PROPERTY(QJsonArray bimProjList READ getBimProjList NOTIFY bimProjListChanged)
    //! "name" and "guid" of the PDS projects below the last BIM project that getPdsProj has found.
    Q_PROPERTY(QJsonArray pdsProjList READ getPdsProjList NOTIFY pdsProjListChanged)
    Q_PROPERTY(bool bCheckedPds READ isPdsChecked NOTIFY bCheckedPdsChanged)
    Q_PROPERTY(QStringList checkList READ getCheckList NOTIFY checkListChanged)
    Q_PROPERTY(bool bViewDWGBimList READ isDWGBimListViewed NOTIFY bViewDWGBimListChanged)

public:
    //! Stages of a download, for the host; the plug-in only publishes the names.
    enum EDownLoadStatus { DownLoadInitial, DownLoading, DownLoadSuccess, DownLoadError };
    Q_ENUM(EDownLoadStatus)

    CPdsMgr();
    //! Waits for a running fetch, without a timeout, and drops its reply.
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
    //! The dialog is no longer visible. Removes it from the scene and does not delete it.
    Q_INVOKABLE void onCloseDialog();
    //! Requests the BIM list. The lists are empty until it arrives; the change signals are emitted only then.
    Q_INVOKABLE void getBimProj();
    //! Requests the DWG list; otherwise as getBimProj.
    Q_INVOKABLE void getDWGBimProj();
    //! Reads the PDS projects below a BIM project. Changes nothing if the database does not contain it.
    Q_INVOKABLE void getPdsProj(const QString& strGuid);
    //! Adds an entry to the check list, or removes one equal entry. The list may contain duplicates.
    Q_INVOKABLE void checkPdsProj(const QString& strGuid, bool bCheck = true);
    //! Requests the host to download a BIM project.
    Q_INVOKABLE void downLoadBimProj(const QString& bimProj);
    //! Requests the host to convert a BIM project: completely if `bCompletionFirst`, otherwise fast.
    Q_INVOKABLE void convertSimplyMode(const QString& bimProj, bool bCompletionFirst);
    //! Shows the models of a department and its descendants; all models if `deptId` is empty.
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

    // The order is intentional: the worker is destroyed before its thread and the members that it uses.
    QJsonArray m_allBimProjList;
    QJsonArray bimProjList;
    QJsonArray pdsProjList;
    QString m_curBimGuid;
    QStringList checkList;
    QThread m_bimThread;
    CBimProjWorker m_bimWorker;
    QPointer<QQmlContext> m_qmlContext;
    //! The host's item owns the component and the item.
    QQmlComponent* m_dialogComponent = nullptr;
    QPointer<QQuickItem> m_dialogItem;
    QPointer<QQuickItem> m_parentItem;
    //! For the dialog's page. A child object, so that the page no longer uses it when the lists are
    //! destroyed.
    ModelColumns* m_modelColumns;
    BIMObject m_bimObject;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    std::unique_ptr<BVUTILITY::CTreeModel> m_orgModel;
    bool bViewDWGBimList = false;
    //! Name of every model so far, by GUID; entries are never removed. Empty while a helper thread adds
    //! names.
    QMap<QString, QString> m_bimNameMap;
    //! The map with the names of the last list, until a name is requested.
    std::future<QMap<QString, QString>> m_names;
};

} // namespace NelvoPlugin
