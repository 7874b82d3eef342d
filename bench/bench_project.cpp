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

#include <cmath>
#include <cstdio>

//! The organisation tree and the project list beside a bare parse of the same bodies, how their cost grows,
//! and what a tick of the watch on the session leaves in memory.

namespace {

using NelvoDevkit::HttpReply;
using NelvoPlugin::CProjectInfoMgr;
using TestSupport::json;
using TestSupport::StartedServices;

const auto TreePath = QStringLiteral("/org/tree");
const auto ScenePath = QStringLiteral("/scene/project");

const auto TreeMemoryMode = QStringLiteral("--tree-memory");

constexpr int Rounds = 7;

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

double parseMilliseconds(const QByteArray& body)
{
    QVector<double> times;
    for (int round = 0; round < Rounds; ++round) {
        times.append(Bench::milliseconds([&body] {
            if (QJsonDocument::fromJson(body).isNull())
                qFatal("the body is no JSON");
        }));
    }
    return Bench::median(times);
}

double transferMilliseconds(const QString& url, const QString& path)
{
    QVector<double> times;
    for (int round = 0; round < Rounds; ++round) {
        times.append(Bench::milliseconds(
            [&] { httpGet(sharedNetworkManager(), url, path, {}, [](const QByteArray&) { return true; }); }));
    }
    return Bench::median(times);
}

//! The refresh of a new manager and the copy of its tree for the host.
double treeMilliseconds(const QString& url)
{
    QVector<double> times;
    for (int round = 0; round < Rounds; ++round) {
        CProjectInfoMgr manager;
        NelvoSDK::OrgTreeNode root;
        times.append(Bench::milliseconds([&] {
            manager.ReflushProjOrgInfo(sessionAt(url));
            manager.GetOrgTree(root);
        }));
        if (root.children.empty())
            qFatal("no tree");
    }
    return Bench::median(times);
}

//! The list as a new manager reads it.
double projectsMilliseconds(const QString& url)
{
    QVector<double> times;
    for (int round = 0; round < Rounds; ++round) {
        CProjectInfoMgr manager;
        manager.ReflushProjOrgInfo(sessionAt(url));
        std::list<NelvoSDK::ProjectNode> projects;
        times.append(Bench::milliseconds([&] { manager.GetServerProjectTree(projects); }));
        if (projects.empty())
            qFatal("no projects");
    }
    return Bench::median(times);
}

void measureGrowth(const char* what, const QVector<int>& sizes, const QVector<double>& times)
{
    std::printf("%s:", what);
    for (int index = 0; index < sizes.size(); ++index)
        std::printf("  %d in %.1f ms", sizes.at(index), times.at(index));
    std::printf("\n");
    // A larger body leaves the processor's caches, which costs a little on top of the steps.
    constexpr double slack = 1.25;
    const auto nLogN = [](int size) { return size * std::log2(size); };
    Bench::printRatio("  growth / n log n", times.constLast() / times.constFirst(),
                      nLogN(sizes.constLast()) / nLogN(sizes.constFirst()), "x", slack);
}

void measureTree(StartedServices& services, const QString& url)
{
    const QVector<int> sizes{10000, 50000, 100000};
    QVector<double> own;
    for (const int size : sizes) {
        const HttpReply reply = treeReply(services, size);
        services.setReply("GET", TreePath, reply);
        own.append(treeMilliseconds(url) - transferMilliseconds(url, TreePath));
        if (size == sizes.constLast())
            Bench::printRatio("tree of 100,000 nodes / parse", own.constLast(), parseMilliseconds(reply.body),
                              "ms", 4);
    }
    measureGrowth("tree", sizes, own);
}

void measureProjects(StartedServices& services, const QString& url)
{
    const QVector<int> sizes{10000, 50000, 100000};
    QVector<double> own;
    for (const int size : sizes) {
        const HttpReply reply = projectsReply(services, size);
        services.setReply("GET", ScenePath, reply);
        own.append(projectsMilliseconds(url) - transferMilliseconds(url, ScenePath));
        if (size == 50000)
            Bench::printRatio("list of 50,000 projects / parse", own.constLast(),
                              parseMilliseconds(reply.body), "ms", 4);
    }
    measureGrowth("list", sizes, own);
}

//! In a process of its own, which has nothing else in memory.
int printTreeMemory(const QString& url)
{
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
    std::printf("tree of 100,000 nodes, both copies and the reply: %.0f bytes a node at the peak\n",
                bytes / nodes);
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
    std::printf("a tick of the watch keeps %.0f bytes: %.1f MB a day for each refresh\n", perTick,
                perTick * ticksPerDay / 1e6);
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
    // What a little memory tells comes first, while the process is small.
    measureTicks(url);
    measureTreeMemory(services, url);
    measureTree(services, url);
    services.setReply("GET", TreePath, json("{}"));
    measureProjects(services, url);
    return 0;
}
