#pragma once

#include "services/bimmodels.h"
#include "services/organisation.h"
#include "services/seed.h"

#include <map>
#include <memory>
#include <mutex>

class QJsonArray;
class QJsonObject;

namespace NelvoDevkit {

//! \brief What the editor service keeps apart from its sessions: each enterprise's units, projects and
//! models, and the equipment bound to projects. Any thread.
class EditorData
{
public:
    enum class Outcome { Done, IdIsTaken, UnknownId };

    explicit EditorData(const Seed& seed);

    //! Goes back to the seed.
    void reset();
    //! Replaces the tree of every enterprise by one of that many nodes, up to ten below each, the same one
    //! every time. Projects and models stay as they are. Zero changes nothing.
    void generateTree(int nodes);
    //! Replaces the projects of every enterprise by that many, spread over the departments of its tree. Zero
    //! changes nothing.
    void generateProjects(int count);
    //! Replaces the models of every enterprise and its drawings by that many of each, spread over the
    //! departments of its tree. Zero changes nothing.
    void generateModels(int count);

    //! Whose data a client of unknown account gets: 1001, or if there is none the lowest id.
    qint64 defaultEnterprise() const;
    QByteArray treeJson(qint64 enterpriseId) const;
    //! In the order in which the service lists them, as are models; none if there is no such enterprise.
    QVector<SceneProject> projects(qint64 enterpriseId) const;
    //! Takes id, name and department; the department's name comes from the tree.
    Outcome addProject(qint64 enterpriseId, SceneProject project);
    Outcome renameProject(qint64 enterpriseId, const QString& id, const QString& name);

    ModelLists models(qint64 enterpriseId) const;

    void deleteBindings(const QString& projectId);
    void addBindings(const QString& projectId, int elements);
    EquipmentBindings bindings(const QString& projectId) const;

    //! Projects by enterprise and bindings by project.
    QJsonObject state() const;

private:
    struct Holdings {
        std::shared_ptr<const OrgTree> tree;
        QVector<SceneProject> projects;
        ModelLists models;
    };

    const Seed m_seed;
    mutable std::mutex m_mutex;
    std::map<qint64, Holdings> m_enterprises;
    std::map<QString, EquipmentBindings> m_bindings; // by project
};

//! The projects as the service sends them.
QJsonArray toJson(const QVector<SceneProject>& projects);

} // namespace NelvoDevkit
