#include "bim/bimprojworker.h"
#include "bim/pdsmgr.h"
#include "bim/vldbid.h"
#include "fuzz/support.h"
#include "project/projectinfomgr.h"
#include "tests/support/pluginshell.h"

#include <QCoreApplication>
#include <QJsonArray>

using namespace NelvoPlugin;

namespace {

//! Requests a list and waits until the worker thread delivers it.
void fetch(CPdsMgr& manager, void (CPdsMgr::*request)())
{
    bool came = false;
    const auto connection =
        QObject::connect(&manager, &CPdsMgr::bimProjListChanged, [&came] { came = true; });
    (manager.*request)();
    while (!came)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QObject::disconnect(connection);
}

} // namespace

//! The lists of models and drawings, the names and ids in them, and the filter by department.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray body = Fuzz::bytesOf(data, size);
    Fuzz::Network network;
    network.answer("/bim/relation/", {body});
    network.answer("/bim/relation/dwg", {body});
    network.answer("/org/tree", {R"({"data":{"value":"1001","children":[{"value":"1001-11"}]}})"});

    CProjectInfoMgr projects;
    projects.ReflushProjOrgInfo({});
    TestSupport::PluginShell plugin;
    plugin.projectInfoMgr = &projects;
    CPdsMgr manager;
    manager.SetPlugin(&plugin);
    for (void (CPdsMgr::*request)() : {&CPdsMgr::InitBimData, &CPdsMgr::getDWGBimProj}) {
        fetch(manager, request);
        const QJsonArray models = manager.getBimProjList();
        for (const QJsonValue& model : models) {
            const QString guid = model[QLatin1String("guid")].toString();
            manager.GetBimProjName(guid.toStdWString());
            vldbIdText(toVldbId(guid.toStdWString()));
        }
        for (const char* department : {"1001-11", "1001", ""})
            manager.searchBydeptId(QLatin1String(department));
        Fuzz::require(manager.getBimProjList() == models);
    }
    return 0;
}
