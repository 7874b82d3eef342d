#include "services/organisation.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace NelvoDevkit {

namespace {

constexpr int FanOut = 10;

//! The node with that number; the children of node n are 10n + 1 to 10n + 10.
OrgNode generatedNode(int number, int count)
{
    OrgNode node{QStringLiteral("unit-%1").arg(number),
                 QStringLiteral("部门 %1").arg(number),
                 OrgNode::Department,
                 {}};
    const qint64 first = static_cast<qint64>(number) * FanOut + 1;
    const qint64 end = std::min<qint64>(first + FanOut, count);
    for (qint64 child = first; child < end; ++child)
        node.children.push_back(generatedNode(static_cast<int>(child), count));
    if (number == 0 || !node.children.empty()) {
        node.type = OrgNode::Organisation;
        node.name = QStringLiteral("机构 %1").arg(number);
    }
    return node;
}

} // namespace

OrgTree::OrgTree(const OrgNode& root)
{
    const QJsonObject answer{{QStringLiteral("code"), 0}, {QStringLiteral("data"), read(root, QString())}};
    m_json = QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

QJsonObject OrgTree::read(const OrgNode& node, const QString& parentId)
{
    m_names.insert(node.id, node.name);
    if (node.type == OrgNode::Department)
        m_departments.append(node.id);
    QJsonArray children;
    for (const OrgNode& child : node.children)
        children.append(read(child, node.id));
    return {{QStringLiteral("value"), node.id},
            {QStringLiteral("name"), node.name},
            {QStringLiteral("type"), node.type},
            {QStringLiteral("parId"), parentId},
            {QStringLiteral("children"), children}};
}

OrgNode defaultOrganisation(qint64 enterpriseId, const QString& enterpriseName)
{
    const QString id = QString::number(enterpriseId);
    return {id,
            enterpriseName,
            OrgNode::Organisation,
            {{id + QStringLiteral("-1"), QStringLiteral("综合管理部"), OrgNode::Department, {}},
             {id + QStringLiteral("-2"), QStringLiteral("工程技术部"), OrgNode::Department, {}}}};
}

OrgNode generatedOrganisation(int nodes)
{
    return generatedNode(0, nodes);
}

} // namespace NelvoDevkit
