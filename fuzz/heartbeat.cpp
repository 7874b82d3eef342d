#include "fuzz/support.h"
#include "project/projectinfomgr.h"
#include "tests/support/messagemgrstandin.h"
#include "tests/support/pluginshell.h"

#include <QCoreApplication>
#include <QTimerEvent>

//! The failed reply to a request of the session watch.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray body = Fuzz::bytesOf(data, size);
    Fuzz::Network network;
    network.answer("/org/heartbeat", {body, 401});

    TestSupport::MessageMgrStandIn messages;
    TestSupport::PluginShell plugin;
    plugin.messageMgr = &messages;
    NelvoPlugin::CProjectInfoMgr manager;
    manager.SetPlugin(&plugin);
    QTimerEvent tick(1);
    QCoreApplication::sendEvent(&manager, &tick);
    Fuzz::require(messages.first.isEmpty() || body.contains("infoCode") || body.contains('\\'));
    return 0;
}
