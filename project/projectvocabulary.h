#pragma once

#include <QString>

#include <string>

//! \file
//! \brief Names that the host and the plug-in share. The plug-in defines them and does not use them itself.

namespace NelvoPlugin {

//! Name of a kind of model: 0 is "CIM", 1 is "BIM". The range is not checked. Any thread.
std::wstring ModelKindName(quint8 kind);

//! Names of the two kinds of models.
extern const QString CimModelKind;
extern const QString BimModelKind;

// NOLINTBEGIN(readability-identifier-naming): the host uses this spelling.
//! Keys of the properties of a device.
extern const QString SDK_Propertys;
extern const QString SDK_LogoID;
extern const QString SDK_DeviceObject;
extern const QString NelvoEditorSDK_DeviceID;
extern const QString NelvoEditorSDK_DeviceName;
extern const QString NelvoEditorSDK_VendorId;
extern const QString NelvoEditorSDK_VendorName;
extern const QString NelvoEditorSDK_IotType;
extern const QString NelvoEditorSDK_IotName;
// NOLINTEND(readability-identifier-naming)

//! Keys of the parameters of a component.
namespace ComponentParameter {
extern const QString AlignType;
extern const QString Group;
extern const QString Image;
extern const QString Name;
//! Spelled "paramter". This is intentional.
extern const QString Parameter;
extern const QString SysName;
extern const QString SubType;
extern const QString Unit;
extern const QString Value;
} // namespace ComponentParameter

} // namespace NelvoPlugin
