#include "project/projectvocabulary.h"

#include <array>

namespace NelvoPlugin {

std::wstring ModelKindName(quint8 kind)
{
    static const std::array<std::wstring, 2> names{L"CIM", L"BIM"};
    return names[kind];
}

const QString CimModelKind = QString::fromStdWString(ModelKindName(0));
const QString BimModelKind = QString::fromStdWString(ModelKindName(1));

const QString SDK_Propertys = QStringLiteral("SDK_Propertys");
const QString SDK_LogoID = QStringLiteral("SDK_LogoID");
const QString SDK_DeviceObject = QStringLiteral("SDK_DeviceObject");
const QString NelvoEditorSDK_DeviceID = QStringLiteral("NelvoEditorSDK_DeviceID");
const QString NelvoEditorSDK_DeviceName = QStringLiteral("NelvoEditorSDK_DeviceName");
const QString NelvoEditorSDK_VendorId = QStringLiteral("NelvoEditorSDK_VendorId");
const QString NelvoEditorSDK_VendorName = QStringLiteral("NelvoEditorSDK_VendorName");
const QString NelvoEditorSDK_IotType = QStringLiteral("NelvoEditorSDK_IotType");
const QString NelvoEditorSDK_IotName = QStringLiteral("NelvoEditorSDK_IotName");

namespace ComponentParameter {
const QString AlignType = QStringLiteral("alignType");
const QString Group = QStringLiteral("group");
const QString Image = QStringLiteral("image");
const QString Name = QStringLiteral("name");
const QString Parameter = QStringLiteral("paramter");
const QString SysName = QStringLiteral("sysName");
const QString SubType = QStringLiteral("subType");
const QString Unit = QStringLiteral("unit");
const QString Value = QStringLiteral("value");
} // namespace ComponentParameter

} // namespace NelvoPlugin
