#pragma once

#include "host/devicelist.h"

#include <QObject>

namespace NelvoDevkit {

//! \brief The component that the user has in hand, one of the devices of the scene.
//!
//! The plug-in's pages know it as `compCardData`, which tells about the component, and as `componentObject`,
//! which changes it.
class ComponentCard : public QObject
{
    Q_OBJECT
    //! GUID of the component; empty while there is none. One that the scene does not have is not taken.
    Q_PROPERTY(QString currentComp READ currentComp WRITE select NOTIFY selectionChanged)
    Q_PROPERTY(QString componentName READ componentName NOTIFY selectionChanged)
    //! Serial number of the device bound to the component.
    Q_PROPERTY(QString deviceID READ deviceId NOTIFY deviceChanged)

public:
    //! Not owned; lives longer than the card.
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
