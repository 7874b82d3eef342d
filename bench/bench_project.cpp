#include "bench/measure.h"
#include "bench/processmemory.h"
#include "project/projectinfomgr.h"
#include "services/services.h"
#include "web/webclient.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTimerEvent>

#include <cmath>
#include <cstdio>

//! The organisation tree and the project list beside a bare parse of the same bodies, how their cost grows,
//! and what a tick of the watch on the session leaves in memory.

namespace {

using NelvoDevkit::HttpReply;
using NelvoPlugin::CProjectInfoMgr;

const auto TreePath = QStringLiteral("/org/tree");
const auto ScenePath = QStringLiteral("/scene/project");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");

constexpr int Rounds = 7;

void appendUnit(QByteArray& body, int& next, int& left, int depth)
{
    constexpr int FanOut = 10;
    const QByteArray id = QByteArray::number(next++);
    --left;
    body += R"({"value":"u)" + id + R"(","name":"部门 )" + id + R"(","type":)" +
            (depth % 2 == 0 ? "1" : "2") + R"(,"parId":"p","children":[)";
    for (int child = 0; child < FanOut && left > 0 && depth < 6; ++child) {
        if (child > 0)
            body += ',';
        appendUnit(body, next, left, depth + 1);
    }
    body += "]}";
}

QByteArray treeBody(int nodes)
{
    QByteArray body = "{\"code\":0,\"data\":";
    int next = 0;
    int left = nodes;
    appendUnit(body, next, left, 0);
    return body + '}';
}

QByteArray projectsBody(int count)
{
    QByteArray body = "{\"code\":0,\"data\":[";
    for (int index = 0; index < count; ++index) {
        const QByteArray id = QByteArray::number(index);
        body += (index > 0 ? ",{" : "{");
        body += R"("id":"p)" + id + R"(","name":"项目 )" + id +
                R"(","deptId":"d","deptName":"工程部","code":"C)" + id +
                R"(","basemap":"osm","proj4":"+proj=utm +zone=51","x":121.473701,"y":31.230416})";
    }
    return body + "]}";
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
    constexpr double Slack = 1.25;
    const auto nLogN = [](int size) { return size * std::log2(size); };
    Bench::printRatio("  growth / n log n", times.constLast() / times.constFirst(),
                      nLogN(sizes.constLast()) / nLogN(sizes.constFirst()), "x", Slack);
}

void measureTree(NelvoDevkit::Services& services, const QString& url)
{
    const QVector<int> sizes{10000, 50000, 100000};
    QVector<double> own;
    for (const int size : sizes) {
        const QByteArray body = treeBody(size);
        services.setReply("GET", TreePath, HttpReply{200, "application/json", body, {}});
        own.append(treeMilliseconds(url) - transferMilliseconds(url, TreePath));
        if (size == sizes.constLast())
            Bench::printRatio("tree of 100,000 nodes / parse", own.constLast(), parseMilliseconds(body), "ms",
                              4);
    }
    measureGrowth("tree", sizes, own);
}

void measureProjects(NelvoDevkit::Services& services, const QString& url)
{
    const QVector<int> sizes{10000, 50000, 100000};
    QVector<double> own;
    for (const int size : sizes) {
        const QByteArray body = projectsBody(size);
        services.setReply("GET", ScenePath, HttpReply{200, "application/json", body, {}});
        own.append(projectsMilliseconds(url) - transferMilliseconds(url, ScenePath));
        if (size == 50000)
            Bench::printRatio("list of 50,000 projects / parse", own.constLast(), parseMilliseconds(body),
                              "ms", 4);
    }
    measureGrowth("list", sizes, own);
}

void measureTreeMemory(NelvoDevkit::Services& services, const QString& url)
{
    constexpr int Nodes = 100000;
    services.setReply("GET", TreePath, HttpReply{200, "application/json", treeBody(Nodes), {}});
    const double before = Bench::residentBytes();
    CProjectInfoMgr manager;
    NelvoSDK::OrgTreeNode root;
    manager.ReflushProjOrgInfo(sessionAt(url));
    manager.GetOrgTree(root);
    std::printf("tree of 100,000 nodes, both copies and the reply: %.0f bytes a node at the peak\n",
                (Bench::peakResidentBytes() - before) / Nodes);
}

void measureTicks(NelvoDevkit::Services& services, const QString& url)
{
    constexpr int Ticks = 2000;
    constexpr int WarmUp = 200;
    constexpr double TicksPerDay = 8640;
    services.setReply("GET", HeartbeatPath, HttpReply{200, "application/json", R"({"code":0})", {}});
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(sessionAt(url));
    QTimerEvent event(0);
    for (int tick = 0; tick < WarmUp; ++tick)
        QCoreApplication::sendEvent(&manager, &event);
    const double before = Bench::residentBytes();
    for (int tick = 0; tick < Ticks; ++tick)
        QCoreApplication::sendEvent(&manager, &event);
    const double perTick = (Bench::residentBytes() - before) / Ticks;
    std::printf("a tick of the watch keeps %.0f bytes: %.1f MB a day for each refresh\n", perTick,
                perTick * TicksPerDay / 1e6);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    NelvoDevkit::Services services;
    if (!services.start())
        return 1;
    const QString url = services.editorUrl();
    services.setReply("GET", TreePath, HttpReply{200, "application/json", "{}", {}});
    // What a little memory tells comes first, while the process is small.
    measureTicks(services, url);
    measureTreeMemory(services, url);
    measureTree(services, url);
    services.setReply("GET", TreePath, HttpReply{200, "application/json", "{}", {}});
    measureProjects(services, url);
    return 0;
}
