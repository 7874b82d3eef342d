#pragma once

#include "host/devicelist.h"

#include <QObject>

namespace NelvoDevkit {

//! \brief The component that the user has selected, one of the devices of the scene.
//!
//! The plug-in's pages know it as `compCardData`, from which they read, and as `componentObject`, which they
//! change.
class ComponentCard : public QObject
{
    Q_OBJECT
    //! GUID of the component; empty if none is selected. A GUID that the scene does not contain is ignored.
    Q_PROPERTY(QString currentComp READ currentComp WRITE select NOTIFY selectionChanged)
    Q_PROPERTY(QString componentName READ componentName NOTIFY selectionChanged)
    //! Serial number of the device bound to the component.
    Q_PROPERTY(QString deviceID READ deviceId NOTIFY deviceChanged)

public:
    //! Does not own `devices`, which must outlive the card.
    explicit ComponentCard(DeviceList& devices);

    QString currentComp() const { return m_component; }
    QString componentName() const { return m_devices.nameOf(m_component); }
    QString deviceId() const { return m_devices.serialOf(m_component); }
    void select(const QString& component);

    //! Unbinds the component's device.
    Q_INVOKABLE void clearDeviceData(const QString& component);

Q_SIGNALS:
    void selectionChanged();
    void deviceChanged();

private:
    DeviceList& m_devices;
    QString m_component;
};

} // namespace NelvoDevkit
