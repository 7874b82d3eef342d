#include "host/devicelist.h"

#include <QUuid>

#include <algorithm>
#include <iterator>

namespace NelvoDevkit {

namespace {

QStringList componentNames()
{
    return {QStringLiteral("循环水泵 1#"), QStringLiteral("配电柜 B2-03"),
            QStringLiteral("温湿度传感器 A-201"), QStringLiteral("南门摄像机"),
            QStringLiteral("新风机组 3F")};
}

} // namespace

void DeviceList::setProject(const QString& id)
{
    beginResetModel();
    m_components.clear();
    if (!id.isEmpty()) {
        for (const QString& name : componentNames()) {
            const QUuid guid = QUuid::createUuidV5(QUuid(), id + QLatin1Char('/') + name);
            m_components.push_back({name, guid.toString(QUuid::WithoutBraces)});
        }
    }
    endResetModel();
    Q_EMIT boundCountChanged();
}

QMap<QString, QString> DeviceList::bindings() const
{
    QMap<QString, QString> bound;
    for (const Component& component : m_components) {
        const QString serial = m_serials.value(component.guid).trimmed();
        if (!serial.isEmpty())
            bound.insert(component.guid, serial);
    }
    return bound;
}

QString DeviceList::nameOf(const QString& guid) const
{
    return index(rowOf(guid)).data(ComponentRole).toString();
}

QString DeviceList::serialOf(const QString& guid) const
{
    return index(rowOf(guid)).data(SerialRole).toString();
}

void DeviceList::clearSerial(const QString& guid)
{
    setData(index(rowOf(guid)), QString(), SerialRole);
}

int DeviceList::rowOf(const QString& guid) const
{
    const auto found = std::find_if(m_components.begin(), m_components.end(),
                                    [&guid](const Component& component) { return component.guid == guid; });
    return found == m_components.end() ? -1 : int(std::distance(m_components.begin(), found));
}

int DeviceList::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_components.size());
}

QVariant DeviceList::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Component& component = m_components[std::size_t(index.row())];
    switch (role) {
    case ComponentRole:
        return component.name;
    case SerialRole:
        return m_serials.value(component.guid);
    case GuidRole:
        return component.guid;
    default:
        return {};
    }
}

bool DeviceList::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (role != SerialRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return false;
    m_serials.insert(m_components[std::size_t(index.row())].guid, value.toString());
    Q_EMIT dataChanged(index, index, {SerialRole});
    Q_EMIT boundCountChanged();
    return true;
}

QHash<int, QByteArray> DeviceList::roleNames() const
{
    return {{ComponentRole, "component"}, {SerialRole, "serial"}, {GuidRole, "guid"}};
}

} // namespace NelvoDevkit
