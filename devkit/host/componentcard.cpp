#include "host/componentcard.h"

namespace NelvoDevkit {

ComponentCard::ComponentCard(DeviceList& devices) : m_devices(devices)
{
    connect(&devices, &DeviceList::dataChanged, this, &ComponentCard::deviceChanged);
    // Another project has other components.
    connect(&devices, &DeviceList::modelReset, this, [this] { select(m_component); });
}

void ComponentCard::select(const QString& component)
{
    const QString known = m_devices.nameOf(component).isEmpty() ? QString() : component;
    if (known == m_component)
        return;
    m_component = known;
    Q_EMIT selectionChanged();
    Q_EMIT deviceChanged();
}

void ComponentCard::clearDeviceData(const QString& component)
{
    m_devices.clearSerial(component);
}

} // namespace NelvoDevkit
