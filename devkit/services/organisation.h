#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QVector>

#include <vector>

class QJsonObject;

namespace NelvoDevkit {

//! \brief A unit of an enterprise, with the units below it.
struct OrgNode {
    enum Type { Organisation = 1, Department = 2 };

    QString id;
    QString name;
    int type = Organisation;
    std::vector<OrgNode> children;
};

//! \brief An enterprise's tree of units, ready to be sent and to be looked up in. It never changes.
class OrgTree
{
public:
    explicit OrgTree(const OrgNode& root);

    //! The answer that tells the whole tree.
    const QByteArray& json() const { return m_json; }
    //! Name of the unit, or an empty text.
    QString nameOf(const QString& id) const { return m_names.value(id); }
    //! Ids of the departments, in the order in which they stand in the tree.
    const QVector<QString>& departments() const { return m_departments; }

private:
    QJsonObject read(const OrgNode& node, const QString& parentId);

    QHash<QString, QString> m_names;
    QVector<QString> m_departments;
    QByteArray m_json;
};

//! The small tree of an enterprise about which no more than its id and name is known.
OrgNode defaultOrganisation(qint64 enterpriseId, const QString& enterpriseName);
//! A tree of that many nodes, at least one, up to ten below each; the same one every time.
OrgNode generatedOrganisation(int nodes);

} // namespace NelvoDevkit
