#include "bim/pdsmgr.h"

#include "bim/conversionvocabulary.h"
#include "bim/modelcolumns.h"
#include "bim/orgitems.h"
#include "bim/vldbid.h"

#include <BVUtility/CTreeModel.h>
#include <NelvoSDK/IHostContext.h>
#include <NelvoSDK/INelvoSDKPlugin.h>
#include <NelvoSDK/IProjectInfoMgr.h>
#include <VLSmartDB/IVLDBDirector.h>

#include <QJsonObject>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QSet>
#include <QVariant>
#include <QWebChannel>

#include <utility>

namespace NelvoPlugin {

using NelvoSDK::IPdsObserver;

CPdsMgr::CPdsMgr()
    : m_modelColumns(new ModelColumns(bimProjList, this))
    , m_orgModel(std::make_unique<BVUTILITY::CTreeModel>(nullptr))
{
    qRegisterMetaType<QMap<QString, QString>>("QMap<QString,QString>");
    m_bimWorker.moveToThread(&m_bimThread);
    connect(this, &CPdsMgr::sigGetBimProjList, &m_bimWorker, &CBimProjWorker::getBimProjList);
    connect(this, &CPdsMgr::sigGetDWGBimProjList, &m_bimWorker, &CBimProjWorker::getDWGBimProjList);
    connect(&m_bimWorker, &CBimProjWorker::sigSyncBimProjList, this, &CPdsMgr::onSyncBimProjList);
    connect(this, &CPdsMgr::bimProjListChanged, m_modelColumns, &ModelColumns::columnsChanged);
    m_bimThread.start();
}

CPdsMgr::~CPdsMgr()
{
    m_bimThread.quit();
    m_bimThread.wait();
}

NelvoSDK::INelvoSDKPlugin* CPdsMgr::GetPlugin()
{
    return m_plugin;
}

void CPdsMgr::SetPlugin(NelvoSDK::INelvoSDKPlugin* plugin)
{
    m_plugin = plugin;
}

void CPdsMgr::InitBimData()
{
    NelvoSDK::OrgTreeNode root;
    m_plugin->GetProjectInfoMgr()->GetOrgTree(root);
    // Appends to the existing rows and never clears the model. This is intentional.
    appendOrgNode(m_orgModel->invisibleRootItem(), root);
    Q_EMIT sigGetBimProjList();

    m_bimObject.init();
    auto* const host = static_cast<NelvoSDK::IHostContext*>(m_plugin->GetHostContext());
    if (QWebChannel* channel = host ? host->GetWebChannel() : nullptr) {
        channel->registerObject(QStringLiteral("bimObject"), &m_bimObject);
        // A channel without clients would keep a destroyed object and pass it to the next client.
        connect(&m_bimObject, &QObject::destroyed, channel, &QWebChannel::deregisterObject,
                Qt::UniqueConnection);
    }
}

void CPdsMgr::ReservedHook() {}

void CPdsMgr::SetQmlContext(QQmlContext* context)
{
    context->setContextProperty(QStringLiteral("pdsMgr"), this);
    context->setContextProperty(QStringLiteral("orgModel"), QVariant::fromValue(m_orgModel.get()));
    m_qmlContext = context;
}

void CPdsMgr::CreateBimDialog(QQuickItem* parent)
{
    if (!m_qmlContext || !m_qmlContext->isValid())
        return;
    m_dialogComponent =
        new QQmlComponent(m_qmlContext->engine(),
                          QStringLiteral("qrc:/NelvoPlugin/qmls/BimDialog/BimDialogControl.qml"), parent);
    QObject* const dialog = m_dialogComponent->beginCreate(m_qmlContext);
    if (dialog) {
        dialog->setProperty("modelColumns", QVariant::fromValue<QObject*>(m_modelColumns));
        m_dialogComponent->completeCreate();
    }
    m_dialogItem = qobject_cast<QQuickItem*>(dialog);
    m_parentItem = parent;
    if (m_dialogItem)
        m_dialogItem->setParent(parent);
}

void CPdsMgr::OpenBimDialog()
{
    openDialog("openBimDialog");
}

void CPdsMgr::OpenDWGBimDialog()
{
    openDialog("openDWGBimDialog");
}

//! Maps the parent's own position through the parent's transform. This is intentional.
void CPdsMgr::openDialog(const char* function)
{
    if (!m_dialogItem || !m_parentItem)
        return;
    m_dialogItem->setParentItem(m_parentItem);
    const QPointF inScene = m_parentItem->mapToScene(m_parentItem->position());
    m_dialogItem->setPosition(m_dialogItem->mapFromScene(inScene));
    QMetaObject::invokeMethod(m_dialogItem, function, Qt::AutoConnection);
}

void CPdsMgr::Attach(IPdsObserver* observer)
{
    ISubject::Attach(observer);
}

void CPdsMgr::Detach(IPdsObserver* observer)
{
    ISubject::Detach(observer);
}

std::wstring CPdsMgr::GetBimProjName(const std::wstring& guid)
{
    if (m_names.valid())
        m_bimNameMap = m_names.get();
    return guid.empty() ? std::wstring() : m_bimNameMap.value(QString::fromStdWString(guid)).toStdWString();
}

void CPdsMgr::onOpenDialog()
{
    if (!m_dialogItem)
        return;
    m_dialogItem->setParentItem(m_parentItem);
    Notify([this](IPdsObserver& observer) { observer.OnBimDialogOpened(m_dialogItem); });
}

void CPdsMgr::onCloseDialog()
{
    if (!m_dialogItem)
        return;
    m_dialogItem->setParentItem(nullptr);
    Notify([this](IPdsObserver& observer) { observer.OnBimDialogClosed(m_dialogItem); });
}

void CPdsMgr::getBimProj()
{
    if (clearBimProjLists(false))
        Q_EMIT sigGetBimProjList();
}

void CPdsMgr::getDWGBimProj()
{
    if (clearBimProjLists(true))
        Q_EMIT sigGetDWGBimProjList();
}

//! Emits no change signal. This is intentional: the dialog keeps its rows and its title until the reply.
bool CPdsMgr::clearBimProjLists(bool bViewDWG)
{
    const QPointer<CPdsMgr> self(this);
    bViewDWGBimList = bViewDWG;
    bimProjList = {};
    // Freeing a long list takes longer than showing the dialog, so the worker thread frees it.
    QMetaObject::invokeMethod(&m_bimWorker, [list = std::exchange(m_allBimProjList, {})] {});
    Notify([](IPdsObserver& observer) { observer.OnBimProjListCleared(); });
    return self;
}

void CPdsMgr::onSyncBimProjList(const QJsonArray& array, bool bSuccess)
{
    const QPointer<CPdsMgr> self(this);
    Notify([](IPdsObserver& observer) { observer.OnBimProjListSynced(); });
    if (!self)
        return;
    m_allBimProjList = array;
    bimProjList = array;
    if (bSuccess)
        takeInNames(array);
    Q_EMIT bViewDWGBimListChanged();
    if (self)
        Q_EMIT bimProjListChanged();
}

//! Pages wait for the list but not for the names, so a helper thread stores the names. A request for a name
//! waits for that thread.
void CPdsMgr::takeInNames(QJsonArray list)
{
    if (m_names.valid())
        m_bimNameMap = m_names.get();
    m_names = std::async([list = std::move(list), names = std::exchange(m_bimNameMap, {})]() mutable {
        // The task exists until a name is requested; the list need not.
        const QJsonArray all = std::exchange(list, {});
        for (const QJsonValue& element : all) {
            const QJsonObject record = element.toObject();
            const auto guid = record.constFind(QLatin1String("guid"));
            const auto name = record.constFind(QLatin1String("name"));
            if (guid != record.constEnd() && name != record.constEnd())
                names.insert(guid->toString(), name->toString());
        }
        return std::exchange(names, {});
    });
}

void CPdsMgr::getPdsProj(const QString& strGuid)
{
    VLSmartDB::IVLDB* const database = VLSmartDB::GetIDBDirector()->GetDB();
    const VLSmartDB::VLDBId projectId = toVldbId(strGuid.toStdWString());
    database->LoadObject(projectId);
    VLSmartDB::IVLDBObject* const project = database->GetObject(projectId, {});
    if (!project)
        return;
    m_curBimGuid = strGuid;

    std::vector<VLSmartDB::VLDBId> childIds;
    project->GetChildren()->ListIds(childIds);
    pdsProjList = {};
    for (const VLSmartDB::VLDBId& childId : childIds) {
        VLSmartDB::IVLDBObject* const child = database->GetObject(childId, {});
        const bool isImported = !child->GetProperty(editor_import_source_type).empty();
        const bool isDrawing = child->GetTypeName() == L"DWG";
        if (isImported || isDrawing)
            continue;
        pdsProjList.append(
            QJsonObject{{QStringLiteral("name"), QString::fromStdWString(child->GetName())},
                        {QStringLiteral("guid"), QString::fromStdWString(vldbIdText(child->GetId()))}});
    }
    checkList.clear();
    const QPointer<CPdsMgr> self(this);
    Q_EMIT bCheckedPdsChanged();
    if (self)
        Q_EMIT pdsProjListChanged();
    if (self)
        Q_EMIT checkListChanged();
}

void CPdsMgr::checkPdsProj(const QString& strGuid, bool bCheck)
{
    if (bCheck)
        checkList.append(strGuid);
    else
        checkList.removeOne(strGuid);
    const QPointer<CPdsMgr> self(this);
    Q_EMIT bCheckedPdsChanged();
    if (self)
        Q_EMIT checkListChanged();
}

void CPdsMgr::downLoadBimProj(const QString& bimProj)
{
    const QStringList guids{bimProj};
    Notify([&guids](IPdsObserver& observer) { observer.OnDownLoadBimProj(guids); });
}

void CPdsMgr::convertSimplyMode(const QString& bimProj, bool bCompletionFirst)
{
    Notify([&](IPdsObserver& observer) { observer.OnConvertSimplyMode(bimProj, bCompletionFirst); });
}

void CPdsMgr::searchBydeptId(const QString& deptId)
{
    bimProjList = {};
    QStandardItem* const department = findOrgItem(deptId, m_orgModel->invisibleRootItem());
    if (!department)
        return;
    QStringList ids;
    collectOrgIds(ids, department);
    const QSet<QString> wanted(ids.cbegin(), ids.cend());
    for (const QJsonValue& element : qAsConst(m_allBimProjList)) {
        if (deptId.isEmpty() || wanted.contains(element.toObject().value(QLatin1String("deptId")).toString()))
            bimProjList.append(element);
    }
    Q_EMIT bimProjListChanged();
}

} // namespace NelvoPlugin
