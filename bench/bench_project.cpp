#include "bench/measure.h"
#include "bench/processmemory.h"
#include "project/projectinfomgr.h"
#include "tests/support/startedservices.h"
#include "web/webclient.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimerEvent>

#include <cstdio>
#include <functional>

//! The organisation tree and the project list compared with a bare parse of the same bodies, how their cost
//! grows, and what a tick of the watch on the session leaves in memory. The tree: processor time of the one
//! thread that does the work. The list, which two threads convert: elapsed time.

namespace {

using NelvoDevkit::HttpReply;
using NelvoPlugin::CProjectInfoMgr;
using TestSupport::json;
using TestSupport::StartedServices;

const auto TreePath = QStringLiteral("/org/tree");
const auto ScenePath = QStringLiteral("/scene/project");

const auto TreeMemoryMode = QStringLiteral("--tree-memory");

constexpr int Rounds = 7;

//! Elapsed time or processor time of the calling thread.
using Clock = double (*)(const std::function<void()>& work);

HttpReply treeReply(StartedServices& services, int nodes)
{
    NelvoDevkit::EditorData& data = services.editorData();
    data.generateTree(nodes);
    return json(data.treeJson(data.defaultEnterprise()));
}

HttpReply projectsReply(StartedServices& services, int count)
{
    NelvoDevkit::EditorData& data = services.editorData();
    data.generateProjects(count);
    const QJsonArray projects = NelvoDevkit::toJson(data.projects(data.defaultEnterprise()));
    data.reset();
    return NelvoDevkit::jsonReply(QJsonObject{{QStringLiteral("data"), projects}});
}

NelvoSDK::LoginSession sessionAt(const QString& url)
{
    NelvoSDK::LoginSession session;
    session.sdkAddr = url.toStdWString();
    return session;
}

//! The median of the figures of several rounds.
double medianOf(const std::function<double()>& round)
{
    QVector<double> times;
    for (int index = 0; index < Rounds; ++index)
        times.append(round());
    return Bench::median(times);
}

double parseMilliseconds(Clock clock, const QByteArray& body)
{
    return medianOf([&] {
        return clock([&body] {
            if (QJsonDocument::fromJson(body).isNull())
                qFatal("the body is no JSON");
        });
    });
}

double transferMilliseconds(Clock clock, const QString& url, const QString& path)
{
    return medianOf([&] {
        return clock(
            [&] { httpGet(sharedNetworkManager(), url, path, {}, [](const QByteArray&) { return true; }); });
    });
}

//! The time of ReflushProjOrgInfo of a new manager and of the copy of its tree for the host.
double treeMilliseconds(const QString& url)
{
    CProjectInfoMgr manager;
    NelvoSDK::OrgTreeNode root;
    const double elapsed = Bench::processorMilliseconds([&] {
        manager.ReflushProjOrgInfo(sessionAt(url));
        manager.GetOrgTree(root);
    });
    if (root.children.empty())
        qFatal("the organisation tree is empty");
    return elapsed;
}

//! The time in which a new manager reads the project list.
double projectsMilliseconds(const QString& url)
{
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(sessionAt(url));
    std::list<NelvoSDK::ProjectNode> projects;
    const double elapsed = Bench::milliseconds([&] { manager.GetServerProjectTree(projects); });
    if (projects.empty())
        qFatal("the project list is empty");
    return elapsed;
}

void measureTree(StartedServices& services, const QString& url)
{
    const QVector<int> sizes{25000, 50000, 100000};
    QVector<double> own;
    double parse = 0;
    for (const int size : sizes) {
        const HttpReply reply = treeReply(services, size);
        services.setReply("GET", TreePath, reply);
        own.append(medianOf([&url] { return treeMilliseconds(url); }) -
                   transferMilliseconds(Bench::processorMilliseconds, url, TreePath));
        parse = parseMilliseconds(Bench::processorMilliseconds, reply.body);
    }
    Bench::printRatio("organisation of 100,000 units / parse", own.constLast(), parse, "ms", 2);
    Bench::printScaling("  units", sizes, own, "ms");
}

void measureProjects(StartedServices& services, const QString& url)
{
    const QVector<int> sizes{12500, 25000, 50000};
    QVector<double> own;
    double parse = 0;
    for (const int size : sizes) {
        const HttpReply reply = projectsReply(services, size);
        services.setReply("GET", ScenePath, reply);
        own.append(medianOf([&url] { return projectsMilliseconds(url); }) -
                   transferMilliseconds(Bench::milliseconds, url, ScenePath));
        parse = parseMilliseconds(Bench::milliseconds, reply.body);
    }
    Bench::printRatio("50,000 scene projects / parse", own.constLast(), parse, "ms", 2.5);
    Bench::printScaling("  projects", sizes, own, "ms");
}

//! Prints the memory for the tree. Runs in a separate process, which has no other data in memory.
int printTreeMemory(const QString& url)
{
    // The first request of a process takes several megabytes, whatever its reply, so it is not measured.
    httpGet(sharedNetworkManager(), url, QStringLiteral("/org/heartbeat"), {},
            [](const QByteArray&) { return true; });
    const double before = Bench::residentBytes();
    CProjectInfoMgr manager;
    NelvoSDK::OrgTreeNode root;
    manager.ReflushProjOrgInfo(sessionAt(url));
    manager.GetOrgTree(root);
    std::printf("%f\n", Bench::peakResidentBytes() - before);
    return root.children.empty() ? 1 : 0;
}

void measureTreeMemory(StartedServices& services, const QString& url)
{
    constexpr int nodes = 100000;
    services.setReply("GET", TreePath, treeReply(services, nodes));
    const QStringList arguments{TreeMemoryMode, url};
    const double bytes = Bench::outputOf(QCoreApplication::applicationFilePath(), arguments).toDouble();
    Bench::printFigure("organisation of 100,000 units: peak for each", bytes / nodes, "bytes", 600);
}

void measureTicks(const QString& url)
{
    constexpr int ticks = 2000;
    constexpr int warmUp = 200;
    constexpr double ticksPerDay = 8640;
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(sessionAt(url));
    QTimerEvent event(0);
    for (int tick = 0; tick < warmUp; ++tick)
        QCoreApplication::sendEvent(&manager, &event);
    const double before = Bench::residentBytes();
    for (int tick = 0; tick < ticks; ++tick)
        QCoreApplication::sendEvent(&manager, &event);
    const double perTick = (Bench::residentBytes() - before) / ticks;
    Bench::printFigure("a tick of the watch keeps", perTick, "bytes", 0);
    Bench::printFigure("  in a day, for each refresh", perTick * ticksPerDay / 1e6, "MB", 0);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == TreeMemoryMode)
        return printTreeMemory(arguments.value(2));

    StartedServices services;
    const QString url = services.editorUrl();
    services.setReply("GET", TreePath, json("{}"));
    // The ticks keep little memory, so they are measured first, while the process is small.
    measureTicks(url);
    measureTreeMemory(services, url);
    measureTree(services, url);
    services.setReply("GET", TreePath, json("{}"));
    measureProjects(services, url);
    return 0;
}
