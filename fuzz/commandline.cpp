#include "fuzz/support.h"
#include "login/casform.h"
#include "login/logincmdlinemgr.h"

//! The argument of a sign-in from the command line.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CLoginCmdLineMgr manager;
    manager.parseCommandLine(QString::fromUtf8(Fuzz::bytesOf(data, size)).toStdWString());
    const QString address = QString::fromStdWString(manager.m_serverUrl);
    Fuzz::require(address.isEmpty() || address.startsWith(QStringLiteral("http")));
    NelvoPlugin::loginForm({}, QString::fromStdWString(manager.m_userName),
                           QString::fromStdWString(manager.m_password));

    // Names that no other program on the machine uses.
    const std::wstring prefix = L"nelvo-fuzz-";
    manager.m_eventName.insert(0, prefix);
    manager.m_mappingName.insert(0, prefix);
    manager.notifyCaller();
    return 0;
}
