#include "host/projectrecord.h"

#include <NelvoSDK/RecordKeys.h>

#include <QVariantMap>

namespace NelvoDevkit {

namespace RecordKeys = NelvoSDK::RecordKeys;

namespace {

QString position(const NelvoSDK::ProjectNode& project)
{
    if (project.x.empty() && project.y.empty())
        return {};
    return QStringLiteral("%1, %2").arg(QString::fromStdWString(project.x),
                                        QString::fromStdWString(project.y));
}

} // namespace

QString attribute(const NelvoSDK::ProjectNode& project, const wchar_t* key)
{
    const auto found = project.attrs.find(key);
    return found == project.attrs.end() ? QString() : QString::fromStdWString(found->second);
}

NelvoSDK::ProjectRef toRef(const NelvoSDK::ProjectNode& project)
{
    return {project.id, project.name, project.attrs};
}

QVariantList describeProject(const NelvoSDK::ProjectNode& project, const QString& enterprise)
{
    const std::pair<QString, QString> fields[] = {
        {QStringLiteral("名称"), QString::fromStdWString(project.name)},
        {QStringLiteral("编号"), QString::fromStdWString(project.id)},
        {QStringLiteral("企业"), enterprise},
        {QStringLiteral("部门"), attribute(project, RecordKeys::DeptName)},
        {QStringLiteral("代码"), QString::fromStdWString(project.code)},
        {QStringLiteral("底图"), QString::fromStdWString(project.basemap)},
        {QStringLiteral("位置"), position(project)},
        {QStringLiteral("坐标系"), QString::fromStdWString(project.proj4)},
    };
    QVariantList rows;
    for (const auto& [label, value] : fields) {
        if (!value.isEmpty())
            rows.append(QVariantMap{{QStringLiteral("label"), label}, {QStringLiteral("value"), value}});
    }
    return rows;
}

} // namespace NelvoDevkit
