#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <vector>

class QJsonObject;

namespace NelvoDevkit {

//! \brief A unit of an enterprise, with its sub-units.
struct OrgNode {
    enum Type { Organisation = 1, Department = 2 };

    QString id;
    QString name;
    int type = Organisation;
    std::vector<OrgNode> children;
};

//! \brief The tree of an enterprise's units, with its JSON and its index. Immutable.
class OrgTree
{
public:
    explicit OrgTree(const OrgNode& root);

    //! The reply with the whole tree.
    const QByteArray& json() const { return m_json; }
    //! Name of the unit, or an empty string.
    QString nameOf(const QString& id) const { return m_names.value(id); }
    //! Ids of the departments, in the order of the tree.
    const QVector<QString>& departments() const { return m_departments; }

private:
    QJsonObject read(const OrgNode& node, const QString& parentId);

    QHash<QString, QString> m_names;
    QVector<QString> m_departments;
    QByteArray m_json;
};

//! A small tree for an enterprise of which only id and name are known.
OrgNode defaultOrganisation(qint64 enterpriseId, const QString& enterpriseName);
//! A generated tree with that number of nodes, at least one, up to ten below each; always the same tree.
OrgNode generatedOrganisation(int nodes);

} // namespace NelvoDevkit
