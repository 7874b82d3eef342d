#include "host/sessionrecord.h"

#include <QVariantMap>

namespace NelvoDevkit {

namespace {

QVariantMap row(const QString& label, const QString& field, const QString& value)
{
    return {
        {QStringLiteral("label"), label}, {QStringLiteral("field"), field}, {QStringLiteral("value"), value}};
}

QVariantMap row(const QString& label, const QString& field, const std::wstring& value)
{
    return row(label, field, QString::fromStdWString(value));
}

QString labelOfExtra(const QString& key)
{
    if (key == QLatin1String("epId"))
        return QStringLiteral("企业编号");
    if (key == QLatin1String("epName"))
        return QStringLiteral("企业名称（附加）");
    return QStringLiteral("附加信息");
}

} // namespace

QVariantList describeSession(const NelvoSDK::LoginSession& session)
{
    QVariantList rows = {
        row(QStringLiteral("企业名称"), QStringLiteral("epName"), session.epName),
        row(QStringLiteral("登录标志"), QStringLiteral("loggedIn"),
            session.loggedIn ? QStringLiteral("true") : QStringLiteral("false")),
        row(QStringLiteral("编辑服务地址"), QStringLiteral("sdkAddr"), session.sdkAddr),
        row(QStringLiteral("代理服务地址"), QStringLiteral("serverAddr"), session.serverAddr),
        row(QStringLiteral("会话 Cookie"), QStringLiteral("cookies"), session.cookies),
        row(QStringLiteral("物联网令牌"), QStringLiteral("iotToken"), session.iotToken),
        row(QStringLiteral("服务令牌"), QStringLiteral("token"), session.token),
        row(QStringLiteral("应用版本"), QStringLiteral("appVer"), session.appVer),
    };
    for (const auto& [key, value] : session.extra) {
        const QString name = QString::fromStdWString(key);
        rows.append(row(labelOfExtra(name), QStringLiteral("extra[\"%1\"]").arg(name), value));
    }
    return rows;
}

} // namespace NelvoDevkit
