#include "tests/qml/bim/standins.h"

#include <QJsonObject>

void CallLog::record(const QString& function, const QVariantList& arguments)
{
    m_calls.append(QVariant(QVariantList{function} + arguments));
    Q_EMIT called(function);
}

QJsonArray PdsManager::bimProjList() const
{
    ++m_listReads;
    return m_list;
}

void PdsManager::deliver(const QJsonArray& list)
{
    m_list = list;
    Q_EMIT bViewDWGBimListChanged();
    Q_EMIT bimProjListChanged();
}

void PdsManager::deliverMany(int count)
{
    QJsonArray list;
    for (int i = 0; i < count; ++i)
        list.append(QJsonObject{
            {QStringLiteral("deptId"), QStringLiteral("dept-1")},
            {QStringLiteral("guid"), QStringLiteral("guid-%1").arg(i)},
            {QStringLiteral("name"), QStringLiteral("模型 %1").arg(i)},
            {QStringLiteral("ppid"), i},
            {QStringLiteral("size"), 1024},
            {QStringLiteral("profession"), 1},
            {QStringLiteral("profImg"), QStringLiteral("qrc:/NelvoPlugin/qmls/images/profession_1.png")},
            {QStringLiteral("profTipText"), QStringLiteral("土建预算")}});
    deliver(list);
}

void PdsManager::filter(const QJsonArray& list)
{
    m_list = list;
    Q_EMIT bimProjListChanged();
}

void PdsManager::reset()
{
    m_viewDWG = false;
    deliver({});
    m_listReads = 0;
}

void PdsManager::onOpenDialog()
{
    m_log.record(QStringLiteral("onOpenDialog"));
}

void PdsManager::onCloseDialog()
{
    m_log.record(QStringLiteral("onCloseDialog"));
}

void PdsManager::getBimProj()
{
    beginFetch(false);
    m_log.record(QStringLiteral("getBimProj"));
}

void PdsManager::getDWGBimProj()
{
    beginFetch(true);
    m_log.record(QStringLiteral("getDWGBimProj"));
}

void PdsManager::downLoadBimProj(const QString& bimProj)
{
    m_log.record(QStringLiteral("downLoadBimProj"), {bimProj});
}

void PdsManager::convertSimplyMode(const QString& bimProj, bool bCompletionFirst)
{
    m_log.record(QStringLiteral("convertSimplyMode"), {bimProj, bCompletionFirst});
}

void PdsManager::searchBydeptId(const QString& deptId)
{
    m_log.record(QStringLiteral("searchBydeptId"), {deptId});
}

// Emits no signal: deliver() emits both when the list arrives.
void PdsManager::beginFetch(bool dwg)
{
    m_viewDWG = dwg;
    m_list = {};
}

void OrgModel::load(const QVariantList& nodes)
{
    clear();
    append(invisibleRootItem(), nodes);
}

void OrgModel::expandAll()
{
    m_log.record(QStringLiteral("expandAll"));
    CTreeModel::expandAll();
}

void OrgModel::append(QStandardItem* parent, const QVariantList& nodes)
{
    for (const QVariant& value : nodes) {
        QVariantMap node = value.toMap();
        auto* item = new QStandardItem;
        append(item, node.take(QStringLiteral("children")).toList());
        item->setData(node, NodeDataRole);
        parent->appendRow(item);
    }
}

void FlatModel::expandAll()
{
    m_log.record(QStringLiteral("expandAll"));
}

bool HostContext::checkBimProjValid(const QVariant& guid, const QVariant& isMainProject)
{
    m_log.record(QStringLiteral("checkBimProjValid"), {guid, isMainProject});
    return m_importAllowed;
}

void HostContext::openWeb(const QString& url, const QVariant& rect)
{
    m_log.record(QStringLiteral("openWeb"), {url, rect});
}

void HostContext::clearDeviceData(const QVariant& comp)
{
    m_log.record(QStringLiteral("clearDeviceData"), {comp});
}
