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

//! \brief The data of the editor service without its sessions: the units, projects and models of each
//!   enterprise, and the equipment bound to projects. Any thread.
class EditorData
{
public:
    enum class Outcome { Done, IdIsTaken, UnknownId };

    explicit EditorData(const Seed& seed);

    //! Restores the data of the seed.
    void reset();
    //! Replaces the tree of every enterprise by a generated one with that number of nodes, up to ten below
    //! each; always the same tree. Projects and models do not change. Zero changes nothing.
    void generateTree(int nodes);
    //! Replaces the projects of every enterprise by `count` generated ones, spread over the departments of
    //! its tree. Zero changes nothing.
    void generateProjects(int count);
    //! Replaces the models and the drawings of every enterprise by `count` generated ones each, spread over
    //! the departments of its tree. Zero changes nothing.
    void generateModels(int count);

    //! The enterprise of a client whose account is unknown: 1001, or the lowest id if 1001 does not exist.
    qint64 defaultEnterprise() const;
    QByteArray treeJson(qint64 enterpriseId) const;
    //! In the order of the service's list, like models; none if the enterprise does not exist.
    QVector<SceneProject> projects(qint64 enterpriseId) const;
    //! Uses id, name and department of `project`; the name of the department is that of the tree.
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
