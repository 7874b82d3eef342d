#pragma once

#include <NelvoSDK/ProjectRecords.h>

#include <QAbstractListModel>

#include <vector>

namespace NelvoDevkit {

//! \brief Scene projects as rows.
class ProjectList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int count READ rowCount NOTIFY countChanged)

public:
    enum Role { NameRole = Qt::DisplayRole, IdRole = Qt::UserRole, CodeRole, DepartmentRole };

    const std::vector<NelvoSDK::ProjectNode>& projects() const { return m_projects; }
    //! The project with that id, or null. Valid until the list changes.
    const NelvoSDK::ProjectNode* find(const QString& id) const;

    //! The name of the project with that id, or an empty string.
    Q_INVOKABLE QString nameOf(const QString& id) const;

    void replace(std::vector<NelvoSDK::ProjectNode> projects);
    void append(const NelvoSDK::ProjectNode& project);
    //! An unknown id has no effect, here and below.
    void rename(const QString& id, const QString& name);
    void remove(const QString& id);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    //! The project's row, or -1.
    int rowOf(const QString& id) const;

    std::vector<NelvoSDK::ProjectNode> m_projects;
};

} // namespace NelvoDevkit
