#include "login/logincmdlinemgr.h"

#include <QString>
#include <QStringList>

namespace {

constexpr int PartCount = 6;

QString withScheme(const QString& address)
{
    const bool hasScheme =
        address.startsWith(QStringLiteral("http://")) || address.startsWith(QStringLiteral("https://"));
    return hasScheme ? address : QStringLiteral("http://") + address;
}

} // namespace

void CLoginCmdLineMgr::parseCommandLine(std::wstring argument)
{
    const QStringList parts =
        QString::fromStdWString(argument).split(QStringLiteral("$$"), Qt::KeepEmptyParts, Qt::CaseSensitive);
    if (parts.size() != PartCount)
        return;
    m_userName = parts.at(0).toStdWString();
    m_password = parts.at(1).toStdWString();
    m_serverUrl = withScheme(parts.at(2)).toStdWString();
    m_eventName = parts.at(3).toStdWString();
    m_mappingName = parts.at(4).toStdWString();
    m_enterpriseId = parts.at(5).toInt();
}
