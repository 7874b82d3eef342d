#include "login/logincmdlinemgr.h"

#include "platform/handshake.h"

#include <QString>
#include <QStringList>

#include <cstring>

namespace {

constexpr int PartCount = 6;

QString withScheme(const QString& address)
{
    const bool hasScheme =
        address.startsWith(QStringLiteral("http://")) || address.startsWith(QStringLiteral("https://"));
    return hasScheme ? address : QStringLiteral("http://") + address;
}

//! At most two bytes, of the eight that the caller has room for.
void writeResult(const std::wstring& mappingName)
{
    NelvoPlugin::SharedMemory* const memory = NelvoPlugin::openSharedMemory(mappingName);
    char* const block = memory ? NelvoPlugin::mapSharedMemory(memory) : nullptr;
    if (block)
        std::memcpy(block, "1", sizeof "1");
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

void CLoginCmdLineMgr::notifyCaller() const
{
    if (m_mappingName.empty() || m_eventName.empty())
        return;
    writeResult(m_mappingName);
    // Also where nothing could be written: the caller waits for it.
    if (NelvoPlugin::NamedEvent* const event = NelvoPlugin::openEvent(m_eventName))
        NelvoPlugin::setEvent(event);
}
