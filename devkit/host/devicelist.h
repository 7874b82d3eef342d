#pragma once

#include <QAbstractListModel>
#include <QMap>

#include <vector>

namespace NelvoDevkit {

//! \brief The components of a scene that represent devices, and the serial numbers bound to them.
//!
//! Every scene has the same few components, with different GUIDs. The user's input is kept until the process
//! ends.
class DeviceList : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int boundCount READ boundCount NOTIFY boundCountChanged)

public:
    enum Role { ComponentRole = Qt::DisplayRole, SerialRole = Qt::EditRole, GuidRole = Qt::UserRole };

    //! Shows the components of that project, or none if the id is empty.
    void setProject(const QString& id);

    //! The serial number of each component that has one, by its GUID.
    QMap<QString, QString> bindings() const;
    //! Name and serial number of a component of the shown project; empty for any other GUID.
    QString nameOf(const QString& guid) const;
    QString serialOf(const QString& guid) const;
    //! Removes the serial number of a component of the shown project.
    void clearSerial(const QString& guid);
    int boundCount() const { return bindings().size(); }

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void boundCountChanged();

private:
    struct Component {
        QString name;
        QString guid;
    };

    //! The component's row, or -1.
    int rowOf(const QString& guid) const;

    std::vector<Component> m_components;
    QMap<QString, QString> m_serials; //!< by GUID, of all projects
};

} // namespace NelvoDevkit
