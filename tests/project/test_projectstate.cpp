#include "project/projectinfomgr.h"

#include "tests/support/messagelog.h"
#include "tests/support/messagemgrstandin.h"
#include "tests/support/pluginshell.h"
#include "tests/support/startedservices.h"
#include "tests/support/wine.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <NelvoSDK/IMessageMgr.h>

#include <QCoreApplication>
#include <QJsonObject>
#include <QNetworkCookie>
#include <QRegularExpression>
#include <QTimer>
#include <QTimerEvent>
#include <QtTest>

#include <algorithm>

using NelvoDevkit::Fault;
using NelvoPlugin::CProjectInfoMgr;
using NelvoSDK::LoginSession;
using NelvoSDK::ProjectNode;
using NelvoSDK::ProjectRef;
using TestSupport::json;
using TestSupport::MessageLog;
using TestSupport::PluginShell;

namespace {

QString joined(std::initializer_list<std::wstring> texts)
{
    QStringList list;
    for (const std::wstring& text : texts)
        list.append(QString::fromStdWString(text));
    return list.join(QLatin1Char('|'));
}

template <typename Unit>
void appendUnits(const Unit& unit, const QString& indent, QStringList& lines)
{
    lines.append(indent + QStringList{unit.value, unit.name, unit.parId, QString::number(unit.type)}.join(
                              QLatin1Char('|')));
    for (const Unit& child : unit.children)
        appendUnits(child, indent + QLatin1Char('>'), lines);
}

void tick(CProjectInfoMgr& manager)
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(&manager, &event);
}

//! One of the manager's calls to the service.
enum class Call { Tree, List, Add, Rename, Delete, Batch, Heartbeat };

struct CallFacts {
    Call call;
    const char* name;
    QByteArray method;
    QString path;
    QString complaint; //!< debug line of a failure; null if there is none
};

const auto Scene = QStringLiteral("scene-1001-01");
const auto TreePath = QStringLiteral("/org/tree");
const auto ListPath = QStringLiteral("/scene/project");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");

const QVector<CallFacts>& calls()
{
    const auto line = [](const char* rest) {
        return QLatin1String("CProjectInfoMgr::") + QLatin1String(rest);
    };
    static const QVector<CallFacts> facts{
        {Call::Tree, "tree", "GET", TreePath, line("ReflushProjOrgInfo /org/tree error!")},
        {Call::List, "list", "GET", ListPath,
         line("GetServerProjectTree getprojList /scene/project falied!")},
        {Call::Add, "add", "POST", ListPath, line("OnUploadProject add project /scene/project falid")},
        {Call::Rename, "rename", "PUT", ListPath,
         line("OnUploadProject update project /scene/project falid")},
        {Call::Delete, "delete", "POST", "/equipment/bind/deleteAll/" + Scene,
         line("OnUploadSdkProperty /equipment/bind/deleteAll/ falid !")},
        {Call::Batch, "batch", "POST", "/equipment/bind/batchAdd/" + Scene,
         line("OnUploadSdkProperty /equipment/bind/batchUpdate/ falid !")},
        {Call::Heartbeat, "heartbeat", "GET", HeartbeatPath, {}},
    };
    return facts;
}

bool isReading(Call call)
{
    return call == Call::Tree || call == Call::List;
}

bool isUpload(Call call)
{
    return !isReading(call) && call != Call::Heartbeat;
}

const CallFacts& factsOf(Call call)
{
    return calls().at(static_cast<int>(call));
}

//! The outcome of a call, as the manager handles it.
enum class Verdict { Failed, Unreadable, Accepted, WithoutData };

//! A fault of the service, with the result of each kind of call.
struct Way {
    const char* name;
    Fault fault;
    int value;
    QString warning; //!< of a call that fails; "%1" is its URL
    Verdict ofReading;
    Verdict ofUpload;
    Verdict ofHeartbeat;
    bool isServed; //!< whether the service carries out the request
    //! The warning about a body that cannot be parsed.
    QString unreadable = QStringLiteral("parse json failed: illegal value");
};

QVector<Way> ways()
{
    using V = Verdict;
    const auto closed = QStringLiteral("Connection closed");
    const auto unauthorized = QStringLiteral("Host requires authentication");
    const auto replied = QStringLiteral("Error transferring %1 - server replied: ");
    return {
        {"refuse", Fault::Refuse, 0, "Connection refused", V::Failed, V::Failed, V::Failed, false},
        {"reset", Fault::Reset, 0, closed, V::Failed, V::Failed, V::Failed, false},
        {"cut body", Fault::CutBody, 0, closed, V::Failed, V::Failed, V::Failed, true,
         "parse json failed: unterminated"},
        {"status 401", Fault::Status, 401, unauthorized, V::Failed, V::Failed, V::Failed, false},
        {"status 404", Fault::Status, 404, replied + "Not Found", V::Failed, V::Failed, V::Failed, false},
        {"status 500", Fault::Status, 500, replied + "Internal Server Error", V::Failed, V::Failed, V::Failed,
         false},
        {"no JSON", Fault::NotJson, 0, {}, V::Unreadable, V::Accepted, V::Accepted, false},
        {"wrong JSON", Fault::WrongJson, 0, {}, V::WithoutData, V::Accepted, V::Accepted, true},
        {"endless redirect", Fault::EndlessRedirect, 0, "Too many redirects", V::Failed, V::Failed, V::Failed,
         false},
        {"lost session", Fault::LoseSession, 0, unauthorized, V::Failed, V::Failed, V::Accepted, false},
    };
}

//! A race in Qt's network thread decides whether a body that ends too early is a transport error. If it is
//! none, a call that reads the body still fails, and a call that ignores the body succeeds.
Verdict verdictOf(const Way& way, Call call, const QStringList& warnings)
{
    if (way.fault == Fault::CutBody && !warnings.contains(way.warning))
        return isReading(call) ? Verdict::Unreadable : Verdict::Accepted;
    if (call == Call::Heartbeat)
        return way.ofHeartbeat;
    return isUpload(call) ? way.ofUpload : way.ofReading;
}

} // namespace

Q_DECLARE_METATYPE(NelvoDevkit::Fault)
Q_DECLARE_METATYPE(Call)
Q_DECLARE_METATYPE(Way)

//! The state of the manager and of the service after each call, successful or not.
class TestProjectState : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void newManagerIsAtItsDefaults();
    void sessionIsKeptWhole();
    void everyFieldOfAProjectIsListed();
    void everyFieldOfAUnitIsKept();
    void departmentOfAnAnnouncementIsKept();
    void newSessionKeepsProjects();

    void successfulCalls_data();
    void successfulCalls();
    void everyCallInEveryWay_data();
    void everyCallInEveryWay();
    void tickInsideEveryCall_data();
    void tickInsideEveryCall();

private:
    // The manager's private state; no operation returns all of it.
    //! Ids and names of the service's projects, one project per line.
    static QStringList serverProjects(const CProjectInfoMgr& manager);
    static QStringList localProjects(const CProjectInfoMgr& manager);
    //! The tree, one unit per line, each after its parent and with one ">" per level.
    static QStringList units(const CProjectInfoMgr& manager);

    void prepare(CProjectInfoMgr& manager);
    void make(Call call, CProjectInfoMgr& manager);
    QStringList onService() const;
    QStringList expectedOnService(Call call, Verdict verdict, bool isServed) const;
    void compareManager(const CProjectInfoMgr& manager, Call call, Verdict verdict) const;

    TestSupport::StartedServices m_services;
    LoginSession m_session;
    TestSupport::MessageMgrStandIn m_messages;
    PluginShell m_plugin;
    // The manager's state at the end of prepare.
    QStringList m_server;
    QStringList m_local;
    QStringList m_units;
    // The result of the call that reads the list.
    bool m_isListed = false;
    std::list<ProjectNode> m_listed;
};

QStringList TestProjectState::serverProjects(const CProjectInfoMgr& manager)
{
    QStringList lines;
    const auto& projects = manager.serverProjects;
    for (auto project = projects.begin(); project != projects.end(); ++project)
        lines.append(joined({project.key(), project.value()}));
    return lines;
}

QStringList TestProjectState::localProjects(const CProjectInfoMgr& manager)
{
    QStringList lines;
    const auto& projects = manager.localProjects;
    for (auto project = projects.begin(); project != projects.end(); ++project)
        lines.append(joined({project.key(), project->id, project->name, project->deptId, project->deptName}));
    return lines;
}

QStringList TestProjectState::units(const CProjectInfoMgr& manager)
{
    QStringList lines;
    appendUnits(manager.orgRoot, {}, lines);
    return lines;
}

void TestProjectState::initTestCase()
{
    m_plugin.messageMgr = &m_messages;
}

//! Gets a session from the service, as a sign-in does.
void TestProjectState::init()
{
    m_services.clearFaults();
    m_services.clearReplies();
    m_services.resetState();
    m_services.forgetSessions();
    m_messages.first.clear();
    m_isListed = false;
    m_listed.clear();
    sharedCookieJar()->setAllCookies({});
    QJsonObject ignored;
    QVERIFY(httpGetJson(sharedNetworkManager(), m_services.editorUrl(), HeartbeatPath, {}, ignored));
    QStringList cookies;
    for (const QNetworkCookie& cookie : sharedCookieJar()->allCookies())
        cookies.append(QString::fromUtf8(cookie.toRawForm()));
    m_session = {};
    m_session.cookies = cookies.join(QLatin1Char(',')).toStdWString();
    m_session.sdkAddr = m_services.editorUrl().toStdWString();
    m_session.loggedIn = true;
    m_session.extra = {{L"epId", L"1001"}, {L"epName", L"企业"}};
}

//! Makes the manager read tree and list, adds two local projects, and binds two devices.
void TestProjectState::prepare(CProjectInfoMgr& manager)
{
    manager.SetPlugin(&m_plugin);
    manager.ReflushProjOrgInfo(m_session);
    std::list<ProjectNode> listed;
    QVERIFY(manager.GetServerProjectTree(listed));
    ProjectRef announced;
    announced.name = L"新桥";
    announced.attrs = {{L"deptId", L"1001-11"}};
    for (const wchar_t* id : {L"kept", L"new"}) {
        announced.id = id;
        manager.AddLocalProject(announced);
    }
    manager.OnUploadSdkProperty(Scene, {{"g1", "SN1"}, {"g2", "SN2"}});
    m_server = serverProjects(manager);
    m_local = localProjects(manager);
    m_units = units(manager);
    QCOMPARE(m_server.size(), 3);
    QCOMPARE(m_local.size(), 2);
    QVERIFY(m_units.size() > 3);
    QCOMPARE(onService().constLast(), QStringLiteral("devices=2"));
    m_services.log().clear();
}

void TestProjectState::make(Call call, CProjectInfoMgr& manager)
{
    ProjectNode project;
    project.attrs[L"deptId"] = L"1001-11";
    switch (call) {
    case Call::Tree:
        manager.ReflushProjOrgInfo(m_session);
        break;
    case Call::List:
        m_isListed = manager.GetServerProjectTree(m_listed);
        break;
    case Call::Add:
        project.id = L"new";
        project.name = L"新桥";
        manager.OnUploadProject(project, nullptr, true);
        break;
    case Call::Rename:
        project.id = Scene.toStdWString();
        project.name = L"改名";
        manager.OnUploadProject(project, nullptr, true);
        break;
    case Call::Delete:
    case Call::Batch:
        manager.OnUploadSdkProperty(Scene, {{"g1", "SN1"}, {"g2", "SN2"}, {"g3", "SN3"}});
        break;
    case Call::Heartbeat:
        tick(manager);
        break;
    }
}

//! The enterprise's projects as id=name, then the number of bound devices.
QStringList TestProjectState::onService() const
{
    QStringList lines;
    const QVector<NelvoDevkit::SceneProject> projects = m_services.editorData().projects(1001);
    for (const NelvoDevkit::SceneProject& project : projects)
        lines.append(project.id + QLatin1Char('=') + project.name);
    lines.append(QStringLiteral("devices=%1").arg(m_services.editorData().bindings(Scene).elements));
    return lines;
}

QStringList TestProjectState::expectedOnService(Call call, Verdict verdict, bool isServed) const
{
    QStringList lines{"scene-1001-01=滨江文化中心", "scene-1001-02=高铁新城综合枢纽（一期）",
                      "scene-1001-03=科技馆 “星空” 展厅"};
    int devices = 2;
    if (call == Call::Add && isServed)
        lines.append(QStringLiteral("new=新桥"));
    if (call == Call::Rename && isServed)
        lines[0] = QStringLiteral("scene-1001-01=改名");
    // The devices that remain after the delete call, plus those of the batch if it is sent.
    if (call == Call::Delete)
        devices = (isServed ? 0 : 2) + (verdict == Verdict::Accepted ? 3 : 0);
    if (call == Call::Batch)
        devices = isServed ? 3 : 0;
    lines.append(QStringLiteral("devices=%1").arg(devices));
    return lines;
}

void TestProjectState::compareManager(const CProjectInfoMgr& manager, Call call, Verdict verdict) const
{
    QStringList server = m_server;
    QStringList local = m_local;
    QStringList tree = m_units;
    if (call == Call::Tree && verdict == Verdict::Accepted)
        tree += m_units.mid(1);
    if (call == Call::Tree && verdict == Verdict::WithoutData)
        tree[0] = QStringLiteral("|||0");
    if (call == Call::List && verdict == Verdict::WithoutData)
        server.clear();
    if (call == Call::Add)
        local.removeLast();
    QCOMPARE(serverProjects(manager), server);
    QCOMPARE(localProjects(manager), local);
    QCOMPARE(units(manager), tree);
    const bool isListed = verdict == Verdict::Accepted || verdict == Verdict::WithoutData;
    QCOMPARE(m_isListed, call == Call::List && isListed);
    QCOMPARE(m_listed.size(), std::size_t(call == Call::List && verdict == Verdict::Accepted ? 3 : 0));
    QCOMPARE(manager.session.sdkAddr, m_session.sdkAddr);
}

void TestProjectState::newManagerIsAtItsDefaults()
{
    const CProjectInfoMgr manager;
    const LoginSession& session = manager.session;
    QVERIFY(session.token.empty() && session.cookies.empty() && session.serverAddr.empty() &&
            session.sdkAddr.empty() && session.epName.empty() && session.appVer.empty() &&
            session.iotToken.empty() && session.extra.empty());
    QVERIFY(!session.loggedIn);
    QVERIFY(serverProjects(manager).isEmpty());
    QVERIFY(localProjects(manager).isEmpty());
    QCOMPARE(units(manager), QStringList{QStringLiteral("|||1")});
}

void TestProjectState::sessionIsKeptWhole()
{
    CProjectInfoMgr manager;
    LoginSession full = m_session;
    full.token = L"token";
    full.serverAddr = L"server";
    full.epName = L"name";
    full.appVer = L"version";
    full.iotToken = L"iot";
    full.extra[L"further"] = L"kept as well";
    manager.ReflushProjOrgInfo(full);
    const LoginSession& kept = manager.session;
    QVERIFY(kept.token == full.token && kept.cookies == full.cookies && kept.serverAddr == full.serverAddr &&
            kept.sdkAddr == full.sdkAddr && kept.epName == full.epName && kept.appVer == full.appVer &&
            kept.iotToken == full.iotToken && kept.loggedIn && kept.extra == full.extra);

    // The new session replaces the whole earlier one, including values that the new one lacks.
    manager.ReflushProjOrgInfo(m_session);
    QVERIFY(kept.token.empty() && kept.extra == m_session.extra);
}

void TestProjectState::everyFieldOfAProjectIsListed()
{
    m_services.setReply("GET", ListPath, json(R"({"data":[{"id":"i","name":"n","deptId":"d",
        "deptName":"D","code":"c","basemap":"b","proj4":"p","x":1.5,"y":2.25,"serverFlag":true},
        {"id":7,"name":[],"deptId":{},"deptName":true,"code":1,"basemap":2,"proj4":null,"x":"3","y":null}]})"));
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(m_session);
    std::list<ProjectNode> listed;
    QVERIFY(manager.GetServerProjectTree(listed));
    QStringList lines;
    for (const ProjectNode& node : listed)
        lines.append(
            joined({node.id, node.name, node.x, node.y, node.serverFlag ? L"flag" : L"", node.code,
                    node.basemap, node.proj4, node.attrs.at(L"deptId"), node.attrs.at(L"deptName")}));
    QCOMPARE(lines, (QStringList{"||0|0||||||", "i|n|1.5|2.25||c|b|p|d|D"}));
    QCOMPARE(serverProjects(manager), (QStringList{"|", "i|n"}));
}

void TestProjectState::everyFieldOfAUnitIsKept()
{
    m_services.setReply("GET", TreePath, json(R"({"data":{"value":"v","name":"n","type":2,
        "parId":"p","children":[{"value":1,"name":null,"type":2147483647,"parId":[]},{"type":2147483648},
        {"type":-1},{"type":2.5},{"type":"2"},"no object"]}})"));
    CProjectInfoMgr manager;
    manager.ReflushProjOrgInfo(m_session);
    QCOMPARE(units(manager),
             (QStringList{"v|n|p|2", ">|||2147483647", ">|||0", ">|||-1", ">|||0", ">|||0", ">|||0"}));
}

void TestProjectState::departmentOfAnAnnouncementIsKept()
{
    CProjectInfoMgr manager;
    ProjectRef project;
    project.name = L"n";
    project.id = L"a";
    manager.AddLocalProject(project);
    project.id = L"b";
    project.attrs = {{L"deptId", L"d"}, {L"deptName", L"D"}, {L"epId", L"ignored"}};
    manager.AddLocalProject(project);
    project.id = L"";
    manager.AddLocalProject(project);
    QCOMPARE(localProjects(manager), (QStringList{"a|a|n||", "b|b|n|d|D"}));
}

//! The projects stay even with a session of another enterprise.
void TestProjectState::newSessionKeepsProjects()
{
    CProjectInfoMgr manager;
    prepare(manager);
    m_session.extra = {{L"epId", L"1003"}, {L"epName", L"另一企业"}};
    manager.ReflushProjOrgInfo(m_session);
    QCOMPARE(serverProjects(manager), m_server);
    QCOMPARE(localProjects(manager), m_local);
    ProjectRef found;
    manager.GetProjectInfo(L"kept", found);
    QVERIFY(found.attrs.at(L"epId") == L"1003");
}

void TestProjectState::successfulCalls_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<Fault>("fault");
    for (const CallFacts& facts : calls()) {
        QTest::addRow("%s: delay", facts.name) << facts.call << Fault::Delay;
        // Uploads have no such row: Qt follows their redirect with a GET.
        if (!isUpload(facts.call))
            QTest::addRow("%s: redirect", facts.name) << facts.call << Fault::Redirect;
    }
}

void TestProjectState::successfulCalls()
{
    QFETCH(Call, call);
    QFETCH(Fault, fault);
    CProjectInfoMgr manager;
    prepare(manager);
    m_services.addFault({fault, factsOf(call).path, {}, 20, false});
    const MessageLog log;
    make(call, manager);
    QVERIFY(log.entries().isEmpty());
    QCOMPARE(onService(), expectedOnService(call, Verdict::Accepted, true));
    compareManager(manager, call, Verdict::Accepted);
}

void TestProjectState::everyCallInEveryWay_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<Way>("way");
    const QVector<Way> all = ways();
    for (const CallFacts& facts : calls()) {
        for (const Way& way : all)
            QTest::addRow("%s: %s", facts.name, way.name) << facts.call << way;
    }
}

void TestProjectState::everyCallInEveryWay()
{
    QFETCH(Call, call);
    QFETCH(Way, way);
    if (way.fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    const CallFacts& facts = factsOf(call);
    CProjectInfoMgr manager;
    prepare(manager);
    m_services.addFault({way.fault, facts.path, {}, way.value, false});

    const MessageLog log;
    make(call, manager);
    QStringList found = log.warnings();
    found.replaceInStrings(QRegularExpression("( unterminated) .*"), "\\1"); // the rest depends on the cut
    const Verdict verdict = verdictOf(way, call, found);
    QStringList warnings;
    QStringList debugs;
    if (verdict == Verdict::Failed)
        warnings.append(
            QString(way.warning).replace(QStringLiteral("%1"), m_services.editorUrl() + facts.path));
    if (verdict == Verdict::Unreadable)
        warnings.append(way.unreadable);
    if (verdict == Verdict::Failed && call == Call::Heartbeat)
        warnings.append(way.unreadable);
    else if (verdict == Verdict::Failed || verdict == Verdict::Unreadable)
        debugs.append(facts.complaint);
    QCOMPARE(found, warnings);
    QCOMPARE(log.debugs(), debugs);
    QCOMPARE(log.entries().size(), warnings.size() + debugs.size());

    QCOMPARE(onService(), expectedOnService(call, verdict, way.isServed));
    compareManager(manager, call, verdict);
    QVERIFY(m_messages.first.isEmpty());
}

void TestProjectState::tickInsideEveryCall_data()
{
    QTest::addColumn<Call>("call");
    for (const CallFacts& facts : calls()) {
        if (facts.call != Call::Heartbeat)
            QTest::addRow("%s", facts.name) << facts.call;
    }
}

//! The service does not reply to the call until a tick inside the call has ended.
void TestProjectState::tickInsideEveryCall()
{
    QFETCH(Call, call);
    const CallFacts& facts = factsOf(call);
    CProjectInfoMgr manager;
    prepare(manager);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1002"})", 401));
    m_services.addFault({Fault::Stall, facts.path, facts.method, 0, false});
    const auto isAsked = [this, &facts] {
        const QVector<NelvoDevkit::LoggedRequest> requests = m_services.log().requests();
        return std::any_of(requests.begin(), requests.end(), [&facts](const auto& request) {
            return request.method == facts.method && request.path() == facts.path.toLatin1();
        });
    };
    int toldInside = -1;
    QTimer handler;
    connect(&handler, &QTimer::timeout, this, [&] {
        if (!isAsked())
            return;
        handler.stop();
        tick(manager);
        toldInside = m_messages.first.size();
        m_services.clearFaults();
    });
    handler.start(1);

    const MessageLog log;
    make(call, manager);
    QCOMPARE(toldInside, 1);
    QCOMPARE(m_messages.first.size(), 1);
    QCOMPARE(log.entries().size(), 1); // the tick's own warning
    QCOMPARE(onService(), expectedOnService(call, Verdict::Accepted, true));
    compareManager(manager, call, Verdict::Accepted);
}

QTEST_GUILESS_MAIN(TestProjectState)
#include "test_projectstate.moc"
