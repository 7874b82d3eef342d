#include "project/projectinfomgr.h"

#include "tests/support/messagelog.h"
#include "tests/support/messagemgrstandin.h"
#include "tests/support/pluginshell.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <NelvoSDK/IMessageMgr.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <QTimerEvent>
#include <QUrl>
#include <QtTest>

#include <functional>
#include <stdexcept>

using NelvoDevkit::Fault;
using NelvoDevkit::LoggedRequest;
using NelvoPlugin::CProjectInfoMgr;
using NelvoSDK::LoginSession;
using NelvoSDK::OrgTreeNode;
using NelvoSDK::ProjectNode;
using NelvoSDK::ProjectRef;
using TestSupport::json;
using TestSupport::MessageLog;
using TestSupport::PluginShell;
using TestSupport::row;

namespace {

const auto TreePath = QStringLiteral("/org/tree");
const auto ScenePath = QStringLiteral("/scene/project");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");
const auto DeletePath = QStringLiteral("/equipment/bind/deleteAll/s1");
const auto BatchPath = QStringLiteral("/equipment/bind/batchAdd/s1");
const auto PushedOut = QStringLiteral("您的帐号在另一地点登录，您被迫下线");
const auto TooDeep = QStringLiteral("parse json failed: too deeply nested document");
const auto TreeFailed = QStringLiteral("CProjectInfoMgr::ReflushProjOrgInfo /org/tree error!");
const auto ProjectsFailed =
    QStringLiteral("CProjectInfoMgr::GetServerProjectTree getprojList /scene/project falied!");

QString text(const std::wstring& wide)
{
    return QString::fromStdWString(wide);
}

//! A manager and its plug-in. tick sends a timer event at once, without the interval of ten seconds.
struct Project {
    Project()
    {
        plugin.messageMgr = &messages;
        manager.SetPlugin(&plugin);
    }
    void tick()
    {
        QTimerEvent event(0);
        QCoreApplication::sendEvent(&manager, &event);
    }

    TestSupport::MessageMgrStandIn messages;
    PluginShell plugin;
    CProjectInfoMgr manager;
};

ProjectRef projectRef(const std::wstring& id, const std::wstring& name = L"name")
{
    ProjectRef project;
    project.id = id;
    project.name = name;
    return project;
}

ProjectNode projectNode(const std::wstring& id, const std::wstring& name, bool withDepartment = true)
{
    ProjectNode project;
    project.id = id;
    project.name = name;
    if (withDepartment)
        project.attrs[L"deptId"] = L"d1";
    return project;
}

//! A reply with a tree of that many levels below the root; `innermost` is the deepest node.
QByteArray nested(int levels, const QByteArray& innermost)
{
    return "{\"data\":" + QByteArray("{\"children\":[").repeated(levels) + innermost +
           QByteArray("]}").repeated(levels) + "}";
}

QList<QAbstractEventDispatcher::TimerInfo> timersOf(CProjectInfoMgr& manager)
{
    return QAbstractEventDispatcher::instance()->registeredTimers(&manager);
}

//! Environment variable with the address of the service. It makes this program run tickWithoutAPlugin only.
const char* const NoPluginVariable = "NELVO_TEST_NO_PLUGIN";

int tickWithoutAPlugin(const QString& sdkAddr)
{
    CProjectInfoMgr manager;
    LoginSession session;
    session.sdkAddr = sdkAddr.toStdWString();
    manager.ReflushProjOrgInfo(session);
    QTimerEvent event(0);
    QCoreApplication::sendEvent(&manager, &event);
    return 0;
}

//! The number of levels below the node, along the first children.
int depthOf(const OrgTreeNode& node)
{
    return node.children.empty() ? 0 : 1 + depthOf(node.children.front());
}

} // namespace

class TestProjectInfoMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void metaObject();
    void newManagerHoldsNothing();
    void pluginIsKept();
    void emptyOperationsDoNothing();

    void firstAnnouncementStands();
    void knownProjectsAreNotAnnounced();
    void emptyIdIsNotAnnounced();
    void removedProjectIsUnknown();
    void projectInBothMapsAnswersFromTheService();
    void unknownProjectLeavesTheRecord();
    void projectInfoNamesTheEnterprise();
    void projectInfoBeforeASessionThrows();
    void projectInfoWithoutEnterpriseNameThrows();
    void foreignProjectsAreRemoved();
    void foreignCheckIsExact();
    void emptyEnterpriseIsOneLikeAnyOther();
    void projectsWithoutEnterpriseNeedNoSession();
    void foreignCheckWithoutSessionThrows();

    void refreshSetsTheProperties();
    void emptyAddressIsSetAsWell();
    void failedRefreshHasReplacedJarAndProperties();
    void refreshWithoutTokenKeepsTheEarlierOne();
    void refreshReplacesTheJarBeforeItAsks();
    void emptyCookieTextEmptiesTheJar();
    void unreadableCookieTextIsDropped();
    void cookieWithADateIsCutAtItsComma();
    void cookieTextMayHoldAnyCharacter();
    void handlerDuringTheRefreshSeesTheNewSession();
    void refreshReadsTheTree();
    void treeBeforeARefreshIsABareRoot();
    void treeTypes();
    void oddChildrenAreNone();
    void secondRefreshDoublesTheFirstLevel();
    void treeIsAddedToWhatTheNodeHolds();
    void replyWithoutDataClearsTheRoot();
    void treeAsDeepAsTheParserAllows();
    void refreshCopiesTheSession();

    void projectsInTheOrderOfTheirIds();
    void projectRequestToTheByte();
    void sixSignificantDigits();
    void laterElementOfAnIdWins_data();
    void laterElementOfAnIdWins();
    void numbersAsIdsFallTogether();
    void absentAndNullBaseMap();
    void appendedAndNeverCleared();
    void emptyDataEmptiesTheSnapshot_data();
    void emptyDataEmptiesTheSnapshot();
    void listWithoutASessionFails();
    void listAsDeepAsTheParserAllows();
    void handlerDuringTheListSeesTheEarlierOne();

    void uploadThatIsNotWantedSendsNothing();
    void addToTheByte();
    void addedProjectIsInNeitherMap();
    void addWithoutDepartmentThrowsAndIsErased();
    void emptyDepartmentGoesOutAsItIs();
    void renameToTheByte();
    void sameNameSendsNothing();
    void caseCountsAsAChange();
    void beginningOfANameCountsAsAChange();
    void blankOfANameCountsAsAChange();
    void emptyIdMatchesTheServicesOnly();
    void uploadsDoNotLookAtTheReply_data();
    void uploadsDoNotLookAtTheReply();
    void renameIsSentAgainUntilTheListIsRead();
    void renameToALocalAddressWritesNothing();
    void unknownProjectSendsNothing();
    void announcedProjectIsAddedEvenIfKnown();
    void handlerDuringTheAddSeesNeither();

    void bindingsToTheByte();
    void noBindingsSendAnEmptyArray();
    void emptySceneProjectGoesOutAsItIs();
    void sceneProjectIsNotEscaped();
    void refusedDeleteIsTheOnlyRequest();

    void tickAsksTheHeartbeat();
    void tickReadsTheAddressTolerantly();
    void pushedOutIsTold_data();
    void pushedOutIsTold();
    void otherRepliesTellNothing_data();
    void otherRepliesTellNothing();
    void tickWithoutMessageManagerIsQuiet();
    void tickWithoutAnAddressFails();
    void tickNeedsNoPluginUnlessPushedOut();
    void pushOutWithoutAPluginEndsTheProcess();
    void tickAsDeepAsTheParserAllows();
    void tickGoesOnWhenAStalledReplyArrives();
    void eachTickTellsAgain();
    void tickInsideABlockingCall();
    void tickInsideATick();
    void eachRefreshStartsOneMoreTimer();
    void noTimerDuringTheFirstRefresh();
    void twoTimersAskAndTellTwice();

private:
    LoginSession session() const;
    void refresh(Project& project);
    void knowsOnServer(Project& project, const QByteArray& elements);
    QByteArrayList targets() const;
    //! Runs `call`, and `handler` while the call waits for its first reply.
    void duringItsWait(const std::function<void()>& handler, const std::function<void()>& call);

    TestSupport::StartedServices m_services;
};

void TestProjectInfoMgr::init()
{
    m_services.reset();
    sharedCookieJar()->setAllCookies({});
    for (const char* property : {"sdkAddr", "iotToken", "epId"})
        qApp->setProperty(property, QVariant());
    m_services.setReply("GET", TreePath, json(R"({"data":{"value":"r","name":"集团","type":1}})"));
    m_services.setReply("GET", ScenePath, json(R"({"data":[]})"));
    m_services.setReply("GET", HeartbeatPath, json("{}"));
    for (const QString& path : {ScenePath, DeletePath, BatchPath}) {
        m_services.setReply("POST", path, json("{}"));
        m_services.setReply("PUT", path, json("{}"));
    }
}

LoginSession TestProjectInfoMgr::session() const
{
    LoginSession made;
    made.sdkAddr = m_services.editorUrl().toStdWString();
    made.iotToken = L"token";
    made.loggedIn = true;
    made.extra = {{L"epId", L"1001"}, {L"epName", L"设计院"}};
    return made;
}

void TestProjectInfoMgr::refresh(Project& project)
{
    project.manager.ReflushProjOrgInfo(session());
    m_services.log().clear();
}

//! Sets a session and makes the manager read these projects from the service.
void TestProjectInfoMgr::knowsOnServer(Project& project, const QByteArray& elements)
{
    m_services.setReply("GET", ScenePath, json("{\"data\":[" + elements + "]}"));
    refresh(project);
    std::list<ProjectNode> ignored;
    QVERIFY(project.manager.GetServerProjectTree(ignored));
    m_services.log().clear();
}

QByteArrayList TestProjectInfoMgr::targets() const
{
    QByteArrayList lines;
    const QVector<LoggedRequest> requests = m_services.log().requests();
    for (const LoggedRequest& request : requests)
        lines.append(request.method + ' ' + request.target);
    return lines;
}

void TestProjectInfoMgr::duringItsWait(const std::function<void()>& handler,
                                       const std::function<void()>& call)
{
    m_services.log().clear();
    m_services.addFault({Fault::Stall, {}, {}, 0, true});
    QTimer watch;
    connect(&watch, &QTimer::timeout, this, [&] {
        if (m_services.log().requests().isEmpty())
            return;
        watch.stop();
        handler();
        m_services.clearFaults();
    });
    watch.start(1);
    call();
    QVERIFY(!watch.isActive());
}

void TestProjectInfoMgr::metaObject()
{
    CProjectInfoMgr manager;
    QVERIFY(manager.qt_metacast("NelvoPlugin::CProjectInfoMgr"));
    QCOMPARE(manager.qt_metacast("NelvoSDK::IProjectInfoMgr"),
             static_cast<void*>(static_cast<NelvoSDK::IProjectInfoMgr*>(&manager)));
    const QMetaObject* meta = manager.metaObject();
    QCOMPARE(meta->methodCount(), meta->methodOffset());
    QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    QCOMPARE(meta->enumeratorCount(), meta->enumeratorOffset());
}

void TestProjectInfoMgr::newManagerHoldsNothing()
{
    CProjectInfoMgr manager;
    QVERIFY(!manager.GetPlugin());
    QVERIFY(!manager.parent());
    ProjectRef project = projectRef(L"kept");
    manager.GetProjectInfo(L"any", project);
    QVERIFY(project.id == L"kept");
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::pluginIsKept()
{
    Project project;
    QCOMPARE(project.manager.GetPlugin(), &project.plugin);
    project.manager.SetPlugin(nullptr);
    QVERIFY(!project.manager.GetPlugin());
}

void TestProjectInfoMgr::emptyOperationsDoNothing()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    project.manager.Shutdown();
    project.manager.ReservedFirst();
    project.manager.ReservedSecond();
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.id == L"a");
    QVERIFY(m_services.log().requests().isEmpty());
    // Shutdown does not stop the watch, which runs until the manager is deleted.
    QCOMPARE(timersOf(project.manager).size(), 1);
    project.tick();
    QCOMPARE(targets(), QByteArrayList{"GET /org/heartbeat"});
}

void TestProjectInfoMgr::firstAnnouncementStands()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a", L"first"));
    project.manager.AddLocalProject(projectRef(L"a", L"second"));
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.name == L"first");
}

void TestProjectInfoMgr::knownProjectsAreNotAnnounced()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"theirs"})");
    project.manager.AddLocalProject(projectRef(L"a", L"ours"));
    // A local project would now be added with a POST. The service has this one under another name, so a PUT
    // renames it.
    project.manager.OnUploadProject(projectNode(L"a", L"ours"), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"PUT /scene/project"});
}

void TestProjectInfoMgr::emptyIdIsNotAnnounced()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L""));
    project.manager.OnUploadProject(projectNode(L"", L"x"), nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::removedProjectIsUnknown()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    project.manager.RemoveLocalProject(L"");
    project.manager.RemoveLocalProject(L"unknown");
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.id == L"a");
    project.manager.RemoveLocalProject(L"a");
    ProjectRef gone;
    project.manager.GetProjectInfo(L"a", gone);
    QVERIFY(gone.id.empty());
}

void TestProjectInfoMgr::projectInBothMapsAnswersFromTheService()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a", L"ours"));
    knowsOnServer(project, R"({"id":"a","name":"theirs"})");
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.name == L"theirs");
}

void TestProjectInfoMgr::unknownProjectLeavesTheRecord()
{
    Project project;
    refresh(project);
    ProjectRef record = projectRef(L"kept", L"kept");
    record.attrs[L"other"] = L"x";
    project.manager.GetProjectInfo(L"unknown", record);
    QVERIFY(record.id == L"kept" && record.name == L"kept" && record.attrs.size() == 1);
}

void TestProjectInfoMgr::projectInfoNamesTheEnterprise()
{
    Project project;
    refresh(project);
    ProjectRef announced = projectRef(L"a", L"桥");
    announced.attrs = {{L"deptId", L"d"}, {L"deptName", L"D"}};
    project.manager.AddLocalProject(announced);
    ProjectRef found;
    found.attrs[L"other"] = L"x";
    project.manager.GetProjectInfo(L"a", found);
    QCOMPARE(text(found.name), QStringLiteral("桥"));
    QVERIFY(found.attrs == (std::map<std::wstring, std::wstring>{
                               {L"epId", L"1001"}, {L"epName", L"设计院"}, {L"other", L"x"}}));
}

void TestProjectInfoMgr::projectInfoBeforeASessionThrows()
{
    CProjectInfoMgr manager;
    manager.AddLocalProject(projectRef(L"a", L"n"));
    ProjectRef found;
    try {
        manager.GetProjectInfo(L"a", found);
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid map<K, T> key");
    }
    QVERIFY(found.id == L"a" && found.name == L"n");
    QVERIFY(found.attrs.empty());
}

void TestProjectInfoMgr::projectInfoWithoutEnterpriseNameThrows()
{
    Project project;
    LoginSession nameless = session();
    nameless.extra.erase(L"epName");
    project.manager.ReflushProjOrgInfo(nameless);
    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectRef found;
    QVERIFY_EXCEPTION_THROWN(project.manager.GetProjectInfo(L"a", found), std::out_of_range);
    QVERIFY(found.attrs == (std::map<std::wstring, std::wstring>{{L"epId", L"1001"}}));
}

void TestProjectInfoMgr::foreignProjectsAreRemoved()
{
    Project project;
    refresh(project);
    std::list<ProjectRef> projects;
    for (const wchar_t* epId : {L"1001", L"100", L"10011", L"1002", L"1001"}) {
        projects.push_back(projectRef(L"p" + std::to_wstring(projects.size())));
        projects.back().attrs[L"epId"] = epId;
    }
    projects.insert(std::next(projects.begin()), projectRef(L"without"));
    project.manager.RemoveForeignProjects(projects);
    QCOMPARE(projects.size(), std::size_t(2));
    QVERIFY(projects.front().id == L"p0" && projects.back().id == L"p4");
}

void TestProjectInfoMgr::foreignCheckIsExact()
{
    Project project;
    LoginSession made = session();
    made.extra[L"epId"] = L"Ep1";
    project.manager.ReflushProjOrgInfo(made);
    std::list<ProjectRef> projects;
    for (const wchar_t* epId : {L"ep1", L" Ep1", L"Ep1 ", L"Ep01", L"Ep1"}) {
        projects.push_back(projectRef(epId));
        projects.back().attrs[L"epId"] = epId;
    }
    project.manager.RemoveForeignProjects(projects);
    QCOMPARE(projects.size(), std::size_t(1));
    QVERIFY(projects.front().id == L"Ep1");
}

void TestProjectInfoMgr::emptyEnterpriseIsOneLikeAnyOther()
{
    Project project;
    refresh(project);
    LoginSession made = session();
    made.extra[L"epId"] = L"";
    project.manager.ReflushProjOrgInfo(made);
    QCOMPARE(qApp->property("epId"), QVariant(QString("")));

    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.attrs.at(L"epId").empty());

    std::list<ProjectRef> projects{found, projectRef(L"without")};
    project.manager.RemoveForeignProjects(projects);
    QCOMPARE(projects.size(), std::size_t(1));
    QVERIFY(projects.front().id == L"a");
}

void TestProjectInfoMgr::projectsWithoutEnterpriseNeedNoSession()
{
    CProjectInfoMgr manager;
    std::list<ProjectRef> projects{projectRef(L"a"), projectRef(L"b")};
    manager.RemoveForeignProjects(projects);
    QVERIFY(projects.empty());
}

void TestProjectInfoMgr::foreignCheckWithoutSessionThrows()
{
    CProjectInfoMgr manager;
    std::list<ProjectRef> projects{projectRef(L"a")};
    projects.front().attrs[L"epId"] = L"1001";
    try {
        manager.RemoveForeignProjects(projects);
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid map<K, T> key");
    }
}

void TestProjectInfoMgr::refreshSetsTheProperties()
{
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    QCOMPARE(qApp->property("sdkAddr"), QVariant(m_services.editorUrl()));
    QCOMPARE(qApp->property("iotToken"), QVariant(QStringLiteral("token")));
    QCOMPARE(qApp->property("epId"), QVariant(QStringLiteral("1001")));
}

void TestProjectInfoMgr::emptyAddressIsSetAsWell()
{
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    MessageLog log;
    project.manager.ReflushProjOrgInfo({});
    QCOMPARE(qApp->property("sdkAddr"), QVariant(QString("")));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("Protocol \"\" is unknown")});
    QCOMPARE(log.debugs(), QStringList{TreeFailed});
}

void TestProjectInfoMgr::failedRefreshHasReplacedJarAndProperties()
{
    sharedCookieJar()->setAllCookies({QNetworkCookie("old", "1")});
    m_services.addFault({Fault::Status, TreePath, "GET", 500, false});
    LoginSession made = session();
    made.cookies = L"new=2";
    MessageLog log;
    Project project;
    project.manager.ReflushProjOrgInfo(made);
    QCOMPARE(log.debugs(), QStringList{TreeFailed});
    QCOMPARE(sharedCookieJar()->allCookies().size(), 1);
    QCOMPARE(sharedCookieJar()->allCookies().constFirst().name(), QByteArray("new"));
    QCOMPARE(qApp->property("sdkAddr").toString(), m_services.editorUrl());
    QCOMPARE(qApp->property("iotToken").toString(), QStringLiteral("token"));
    QCOMPARE(qApp->property("epId").toString(), QStringLiteral("1001"));
}

void TestProjectInfoMgr::refreshWithoutTokenKeepsTheEarlierOne()
{
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    LoginSession bare;
    bare.sdkAddr = session().sdkAddr;
    project.manager.ReflushProjOrgInfo(bare);
    QCOMPARE(qApp->property("iotToken"), QVariant(QStringLiteral("token")));
    QCOMPARE(qApp->property("epId"), QVariant(QStringLiteral("1001")));
}

void TestProjectInfoMgr::refreshReplacesTheJarBeforeItAsks()
{
    QNetworkCookie old("CASTGC", "x");
    old.setDomain(QStringLiteral("127.0.0.1"));
    old.setPath(QStringLiteral("/"));
    sharedCookieJar()->setAllCookies({old});
    LoginSession made = session();
    made.cookies = L"EDITORSESSION=1; HttpOnly; domain=127.0.0.1; path=/,route=2; domain=127.0.0.1; path=/";
    Project project;
    project.manager.ReflushProjOrgInfo(made);
    QCOMPARE(targets(), QByteArrayList{"GET /org/tree"});
    QCOMPARE(m_services.log().requests().constFirst().header("Cookie"),
             QByteArray("EDITORSESSION=1; route=2"));
    QCOMPARE(sharedCookieJar()->allCookies().size(), 2);
}

void TestProjectInfoMgr::emptyCookieTextEmptiesTheJar()
{
    sharedCookieJar()->setAllCookies({QNetworkCookie("a", "1")});
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    QVERIFY(sharedCookieJar()->allCookies().isEmpty());
}

void TestProjectInfoMgr::unreadableCookieTextIsDropped()
{
    LoginSession made = session();
    made.cookies = L"a=1,;;,no cookie,=,b=2";
    Project project;
    const MessageLog log;
    project.manager.ReflushProjOrgInfo(made);
    QByteArrayList names;
    for (const QNetworkCookie& cookie : sharedCookieJar()->allCookies())
        names.append(cookie.name());
    QCOMPARE(names, (QByteArrayList{"a", "b"}));
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

void TestProjectInfoMgr::cookieWithADateIsCutAtItsComma()
{
    LoginSession made = session();
    made.cookies = L"s=1; HttpOnly; expires=Wed, 09-Jun-2100 10:18:14 GMT; domain=127.0.0.1; path=/";
    Project project;
    project.manager.ReflushProjOrgInfo(made);
    const QList<QNetworkCookie> cookies = sharedCookieJar()->allCookies();
    QVERIFY(!cookies.isEmpty());
    QCOMPARE(cookies.constFirst().name(), QByteArray("s"));
    QCOMPARE(cookies.constFirst().value(), QByteArray("1"));
    QVERIFY(cookies.constFirst().isSessionCookie());
    QVERIFY(cookies.constFirst().domain().isEmpty());
}

void TestProjectInfoMgr::cookieTextMayHoldAnyCharacter()
{
    LoginSession made = session();
    made.cookies = L"s=桥; domain=127.0.0.1; path=/";
    Project project;
    project.manager.ReflushProjOrgInfo(made);
    QCOMPARE(m_services.onlyRequest().header("Cookie"), QByteArray("s=\xE6\xA1\xA5"));
}

void TestProjectInfoMgr::handlerDuringTheRefreshSeesTheNewSession()
{
    LoginSession made = session();
    made.cookies = L"new=2";
    Project project;
    const auto handler = [this] {
        QCOMPARE(qApp->property("sdkAddr").toString(), m_services.editorUrl());
        QCOMPARE(qApp->property("iotToken").toString(), QStringLiteral("token"));
        QCOMPARE(qApp->property("epId").toString(), QStringLiteral("1001"));
        QCOMPARE(sharedCookieJar()->allCookies().constFirst().name(), QByteArray("new"));
    };
    duringItsWait(handler, [&] { project.manager.ReflushProjOrgInfo(made); });
}

void TestProjectInfoMgr::refreshReadsTheTree()
{
    m_services.setReply("GET", TreePath,
                        json(QStringLiteral(R"({"code":0,"data":{
        "value":"1","name":"集团","type":1,"parId":"","children":[
            {"value":"2","name":"设计部","type":2,"parId":"1"},
            {"value":"3","name":"工程部","type":1,"parId":"1","children":[
                {"value":"4","name":"测量组","type":2,"parId":"3","children":[]}]}]}})")
                                 .toUtf8()));
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    OrgTreeNode root;
    QVERIFY(project.manager.GetOrgTree(root));
    QCOMPARE(text(root.name), QStringLiteral("集团"));
    QVERIFY(root.id == L"1" && !root.canSelect);
    QCOMPARE(root.children.size(), std::size_t(2));
    QCOMPARE(text(root.children.front().name), QStringLiteral("设计部"));
    QVERIFY(root.children.front().canSelect && root.children.front().children.empty());
    const OrgTreeNode& works = root.children.back();
    QVERIFY(works.id == L"3" && !works.canSelect);
    QCOMPARE(text(works.children.front().name), QStringLiteral("测量组"));
    QVERIFY(works.children.front().canSelect);
}

void TestProjectInfoMgr::treeBeforeARefreshIsABareRoot()
{
    CProjectInfoMgr manager;
    OrgTreeNode root;
    QVERIFY(manager.GetOrgTree(root));
    QVERIFY(root.id.empty() && root.name.empty() && !root.canSelect && root.children.empty());
}

void TestProjectInfoMgr::treeTypes()
{
    m_services.setReply("GET", TreePath, json(R"({"data":{"children":[
        {"type":2},{"type":"2"},{},{"type":1},{"type":3},{"type":2.5}]}})"));
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    OrgTreeNode root;
    project.manager.GetOrgTree(root);
    QVector<bool> selectable;
    for (const OrgTreeNode& child : root.children)
        selectable.append(child.canSelect);
    QCOMPARE(selectable, (QVector<bool>{true, false, false, false, false, false}));
}

void TestProjectInfoMgr::oddChildrenAreNone()
{
    m_services.setReply("GET", TreePath, json(R"({"data":{"children":[
        {},{"children":[]},{"children":"x"},{"children":{"a":1}},{"children":null}]}})"));
    Project project;
    project.manager.ReflushProjOrgInfo(session());
    OrgTreeNode root;
    project.manager.GetOrgTree(root);
    QCOMPARE(root.children.size(), std::size_t(5));
    for (const OrgTreeNode& child : root.children)
        QVERIFY(child.children.empty());
}

void TestProjectInfoMgr::secondRefreshDoublesTheFirstLevel()
{
    m_services.setReply(
        "GET", TreePath,
        json(R"({"data":{"children":[{"name":"a","children":[{}]},{"name":"b"},{"name":"c"}]}})"));
    Project project;
    refresh(project);
    refresh(project);
    OrgTreeNode root;
    project.manager.GetOrgTree(root);
    QString names;
    for (const OrgTreeNode& child : root.children)
        names += text(child.name);
    QCOMPARE(names, QStringLiteral("abcabc"));
    QCOMPARE(root.children.front().children.size(), std::size_t(1));
    QCOMPARE(std::next(root.children.begin(), 3)->children.size(), std::size_t(1));
}

void TestProjectInfoMgr::treeIsAddedToWhatTheNodeHolds()
{
    m_services.setReply("GET", TreePath, json(R"({"data":{"value":"v","children":[{"value":"a"}]}})"));
    Project project;
    refresh(project);
    OrgTreeNode root;
    QVERIFY(project.manager.GetOrgTree(root));
    QVERIFY(project.manager.GetOrgTree(root));
    QVERIFY(root.id == L"v");
    QCOMPARE(root.children.size(), std::size_t(2));
}

void TestProjectInfoMgr::replyWithoutDataClearsTheRoot()
{
    m_services.setReply("GET", TreePath,
                        json(R"({"data":{"value":"v","name":"n","type":2,"children":[{},{}]}})"));
    Project project;
    refresh(project);
    for (const QByteArray& body : {QByteArray("{}"), QByteArray(R"({"data":[1]})"), QByteArray("[]")}) {
        m_services.setReply("GET", TreePath, json(body));
        MessageLog log;
        project.manager.ReflushProjOrgInfo(session());
        QVERIFY(log.entries().isEmpty());
        OrgTreeNode root;
        project.manager.GetOrgTree(root);
        QVERIFY(root.id.empty() && root.name.empty() && !root.canSelect);
        QCOMPARE(root.children.size(), std::size_t(2));
    }
}

//! Qt's parser accepts 1024 levels: one for the reply, two for each level of the tree, one for the last node.
void TestProjectInfoMgr::treeAsDeepAsTheParserAllows()
{
    constexpr int deepest = 511;
    m_services.setReply("GET", TreePath, json(nested(deepest, "{}")));
    Project project;
    MessageLog log;
    project.manager.ReflushProjOrgInfo(session());
    OrgTreeNode root;
    project.manager.GetOrgTree(root);
    QCOMPARE(depthOf(root), deepest);
    QVERIFY(log.entries().isEmpty());

    m_services.setReply("GET", TreePath, json(nested(deepest, "{\"children\":[]}")));
    project.manager.ReflushProjOrgInfo(session());
    QCOMPARE(log.warnings(), QStringList{TooDeep});
    QCOMPARE(log.debugs(), QStringList{TreeFailed});
}

void TestProjectInfoMgr::refreshCopiesTheSession()
{
    Project project;
    {
        LoginSession passing = session();
        project.manager.ReflushProjOrgInfo(passing);
        passing.extra.clear();
        passing.sdkAddr.clear();
    }
    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.attrs.at(L"epId") == L"1001");
}

void TestProjectInfoMgr::projectsInTheOrderOfTheirIds()
{
    m_services.setReply("GET", ScenePath,
                        json(QStringLiteral(R"({"data":[
        {"id":"b","name":"二桥","deptId":"d2","deptName":"工程部","code":"C2","basemap":"osm","proj4":"+proj=utm","x":1,"y":-2.5},
        {"id":"ab"},{"id":"a","name":"一桥","serverFlag":true}]})")
                                 .toUtf8()));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QCOMPARE(projects.size(), std::size_t(3));
    QVERIFY(projects.front().id == L"a" && std::next(projects.begin())->id == L"ab");
    const ProjectNode& last = projects.back();
    QCOMPARE(text(last.name), QStringLiteral("二桥"));
    QVERIFY(last.code == L"C2" && last.basemap == L"osm" && last.proj4 == L"+proj=utm");
    QVERIFY(last.x == L"1" && last.y == L"-2.5");
    QCOMPARE(text(last.attrs.at(L"deptName")), QStringLiteral("工程部"));
    QVERIFY(last.attrs.at(L"deptId") == L"d2" && last.attrs.size() == 2);
    QVERIFY(!projects.front().serverFlag && !projects.front().reservedFlag);
    QVERIFY(projects.front().attrs.at(L"deptId").empty() && projects.front().attrs.at(L"deptName").empty());
}

void TestProjectInfoMgr::projectRequestToTheByte()
{
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    project.manager.GetServerProjectTree(projects);
    QCOMPARE(targets(), QByteArrayList{"GET /scene/project"});
    const LoggedRequest request = m_services.log().requests().constFirst();
    QVERIFY(request.body.isEmpty());
    QVERIFY(request.header("Content-Type").isNull());
}

void TestProjectInfoMgr::sixSignificantDigits()
{
    m_services.setReply("GET", ScenePath, json(R"({"data":[
        {"id":"1","x":121.473701,"y":0.000012345678},{"id":"2","x":"5"},{"id":"3","x":12345678,"y":31}]})"));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    project.manager.GetServerProjectTree(projects);
    QStringList numbers;
    for (const ProjectNode& node : projects)
        numbers << text(node.x) << text(node.y);
    QCOMPARE(numbers.join(QLatin1Char(' ')), QStringLiteral("121.474 1.23457e-05 0 0 1.23457e+07 31"));
}

void TestProjectInfoMgr::laterElementOfAnIdWins_data()
{
    QTest::addColumn<QString>("ids");
    QTest::addColumn<QString>("winners");
    // The number in a project's name is its place in the reply.
    row("two", "a a", "a2");
    row("in the first half", "a a b c", "a2 b3 c4");
    row("in the second half", "c b a a", "a4 b2 c1");
    row("in both halves", "b a a a b b", "a4 b6");
}

void TestProjectInfoMgr::laterElementOfAnIdWins()
{
    QFETCH(QString, ids);
    QJsonArray elements;
    for (const QString& id : ids.split(QLatin1Char(' '))) {
        const QString name = id + QString::number(elements.size() + 1);
        elements.append(QJsonObject{
            {QStringLiteral("id"), id}, {QStringLiteral("name"), name}, {QStringLiteral("code"), name}});
    }
    m_services.setReply("GET", ScenePath,
                        NelvoDevkit::jsonReply(QJsonObject{{QStringLiteral("data"), elements}}));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    project.manager.GetServerProjectTree(projects);
    QStringList winners;
    for (const ProjectNode& node : projects) {
        winners << text(node.name);
        QCOMPARE(node.code, node.name);
    }
    QTEST(winners.join(QLatin1Char(' ')), "winners");
}

void TestProjectInfoMgr::numbersAsIdsFallTogether()
{
    m_services.setReply("GET", ScenePath, json(R"({"data":[{"id":1,"name":"x"},{"id":2,"name":"y"},7,{}]})"));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    project.manager.GetServerProjectTree(projects);
    QCOMPARE(projects.size(), std::size_t(1));
    QVERIFY(projects.front().id.empty() && projects.front().name.empty());
}

void TestProjectInfoMgr::absentAndNullBaseMap()
{
    m_services.setReply("GET", ScenePath, json(R"({"data":[{"id":"a"},{"id":"b","basemap":null}]})"));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    project.manager.GetServerProjectTree(projects);
    QVERIFY(projects.front().basemap.empty() && projects.back().basemap.empty());
}

void TestProjectInfoMgr::appendedAndNeverCleared()
{
    m_services.setReply("GET", ScenePath, json(R"({"data":[{"id":"a"},{"id":"b"}]})"));
    Project project;
    refresh(project);
    std::list<ProjectNode> projects{projectNode(L"mine", L"mine")};
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QCOMPARE(projects.size(), std::size_t(5));
    QVERIFY(projects.front().id == L"mine");
}

void TestProjectInfoMgr::emptyDataEmptiesTheSnapshot_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("empty") << QByteArray(R"({"data":[]})");
    QTest::newRow("none") << QByteArray(R"({"code":500,"message":"no"})");
    QTest::newRow("object") << QByteArray(R"({"data":{"id":"a"}})");
    QTest::newRow("array") << QByteArray("[1]");
}

void TestProjectInfoMgr::emptyDataEmptiesTheSnapshot()
{
    QFETCH(QByteArray, body);
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"n"})");
    m_services.setReply("GET", ScenePath, json(body));
    MessageLog log;
    std::list<ProjectNode> projects{projectNode(L"mine", L"mine")};
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QCOMPARE(projects.size(), std::size_t(1));
    QVERIFY(log.entries().isEmpty());
    m_services.log().clear();
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::listWithoutASessionFails()
{
    CProjectInfoMgr manager;
    MessageLog log;
    std::list<ProjectNode> projects;
    QVERIFY(!manager.GetServerProjectTree(projects));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("Protocol \"\" is unknown")});
    QCOMPARE(log.debugs(), QStringList{ProjectsFailed});
    QVERIFY(projects.empty());
}

//! The reply, its list and the project are three levels. The other levels are in an ignored value.
void TestProjectInfoMgr::listAsDeepAsTheParserAllows()
{
    constexpr int deepest = 1021;
    const auto reply = [](int levels) {
        return json(R"({"data":[{"id":"a","further":)" + QByteArray("[").repeated(levels) +
                    QByteArray("]").repeated(levels) + "}]}");
    };
    Project project;
    refresh(project);
    std::list<ProjectNode> projects;
    m_services.setReply("GET", ScenePath, reply(deepest));
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QCOMPARE(projects.size(), std::size_t(1));

    m_services.setReply("GET", ScenePath, reply(deepest + 1));
    MessageLog log;
    QVERIFY(!project.manager.GetServerProjectTree(projects));
    QCOMPARE(projects.size(), std::size_t(1));
    QCOMPARE(log.warnings(), QStringList{TooDeep});
    QCOMPARE(log.debugs(), QStringList{ProjectsFailed});
}

void TestProjectInfoMgr::handlerDuringTheListSeesTheEarlierOne()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"n"})");
    m_services.setReply("GET", ScenePath, json(R"({"data":[]})"));
    std::list<ProjectNode> projects;
    ProjectRef found;
    duringItsWait([&] { project.manager.GetProjectInfo(L"a", found); },
                  [&] { QVERIFY(project.manager.GetServerProjectTree(projects)); });
    QVERIFY(found.id == L"a");
    ProjectRef gone;
    project.manager.GetProjectInfo(L"a", gone);
    QVERIFY(gone.id.empty());
}

void TestProjectInfoMgr::uploadThatIsNotWantedSendsNothing()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    project.manager.OnUploadProject(projectNode(L"a", L"n"), nullptr, false);
    QVERIFY(m_services.log().requests().isEmpty());
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.id == L"a");
}

void TestProjectInfoMgr::addToTheByte()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectNode node = projectNode(L"a", L"桥");
    node.attrs[L"deptName"] = L"never sent";
    node.code = L"never sent";
    project.manager.OnUploadProject(node, this, true);
    QCOMPARE(targets(), QByteArrayList{"POST /scene/project"});
    const LoggedRequest request = m_services.log().requests().constFirst();
    QCOMPARE(request.header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(
        request.body,
        QByteArray("{\n    \"deptId\": \"d1\",\n    \"id\": \"a\",\n    \"name\": \"\xE6\xA1\xA5\"\n}\n"));
}

void TestProjectInfoMgr::addedProjectIsInNeitherMap()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    project.manager.OnUploadProject(projectNode(L"a", L"n"), nullptr, true);
    project.manager.OnUploadProject(projectNode(L"a", L"n"), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"POST /scene/project"});
    ProjectRef found;
    project.manager.GetProjectInfo(L"a", found);
    QVERIFY(found.id.empty());
}

void TestProjectInfoMgr::addWithoutDepartmentThrowsAndIsErased()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    const ProjectNode homeless = projectNode(L"a", L"n", false);
    try {
        project.manager.OnUploadProject(homeless, nullptr, true);
        QFAIL("nothing was thrown");
    } catch (const std::out_of_range& error) {
        QCOMPARE(error.what(), "invalid map<K, T> key");
    }
    QVERIFY(m_services.log().requests().isEmpty());
    project.manager.OnUploadProject(homeless, nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::emptyDepartmentGoesOutAsItIs()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectNode node = projectNode(L"a", L"n");
    node.attrs[L"deptId"] = L"";
    project.manager.OnUploadProject(node, nullptr, true);
    QCOMPARE(m_services.onlyRequest().body,
             QByteArray("{\n    \"deptId\": \"\",\n    \"id\": \"a\",\n    \"name\": \"n\"\n}\n"));
}

void TestProjectInfoMgr::renameToTheByte()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"old"})");
    project.manager.OnUploadProject(projectNode(L"a", L"new", false), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"PUT /scene/project"});
    const LoggedRequest request = m_services.log().requests().constFirst();
    QCOMPARE(request.header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(request.body, QByteArray("{\n    \"id\": \"a\",\n    \"name\": \"new\"\n}\n"));
}

void TestProjectInfoMgr::sameNameSendsNothing()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"same"})");
    project.manager.OnUploadProject(projectNode(L"a", L"same"), nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::caseCountsAsAChange()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"Bridge"})");
    project.manager.OnUploadProject(projectNode(L"a", L"bridge"), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"PUT /scene/project"});
}

void TestProjectInfoMgr::beginningOfANameCountsAsAChange()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"Bridge"})");
    project.manager.OnUploadProject(projectNode(L"a", L"Bridg"), nullptr, true);
    project.manager.OnUploadProject(projectNode(L"a", L""), nullptr, true);
    QCOMPARE(targets(), (QByteArrayList{"PUT /scene/project", "PUT /scene/project"}));
}

void TestProjectInfoMgr::blankOfANameCountsAsAChange()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"Big Bridge"})");
    for (const wchar_t* name : {L" Big Bridge", L"Big Bridge ", L"Big  Bridge"})
        project.manager.OnUploadProject(projectNode(L"a", name), nullptr, true);
    const QByteArray rename = "PUT /scene/project";
    QCOMPARE(targets(), (QByteArrayList{rename, rename, rename}));
}

void TestProjectInfoMgr::emptyIdMatchesTheServicesOnly()
{
    Project project;
    knowsOnServer(project, R"({"id":7,"name":"old"})");
    project.manager.AddLocalProject(projectRef(L"", L"new"));
    project.manager.OnUploadProject(projectNode(L"", L"new"), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"PUT /scene/project"});
    QCOMPARE(m_services.log().requests().constFirst().body,
             QByteArray("{\n    \"id\": \"\",\n    \"name\": \"new\"\n}\n"));
}

void TestProjectInfoMgr::uploadsDoNotLookAtTheReply_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("no JSON") << 200 << QByteArray("<html/>");
    QTest::newRow("failure in the body") << 200 << QByteArray(R"({"code":500,"message":"no"})");
    QTest::newRow("created") << 201 << QByteArray("{}");
    QTest::newRow("no content") << 204 << QByteArray();
}

void TestProjectInfoMgr::uploadsDoNotLookAtTheReply()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"old"})");
    for (const QString& path : {ScenePath, DeletePath, BatchPath}) {
        m_services.setReply("POST", path, json(body, status));
        m_services.setReply("PUT", path, json(body, status));
    }
    project.manager.AddLocalProject(projectRef(L"b"));
    MessageLog log;
    project.manager.OnUploadProject(projectNode(L"b", L"n"), nullptr, true);
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    project.manager.OnUploadSdkProperty(QStringLiteral("s1"), {{"g", "s"}});
    QCOMPARE(targets(), (QByteArrayList{"POST /scene/project", "PUT /scene/project",
                                        "POST " + DeletePath.toLatin1(), "POST " + BatchPath.toLatin1()}));
    QVERIFY(log.entries().isEmpty());
}

void TestProjectInfoMgr::renameIsSentAgainUntilTheListIsRead()
{
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"old"})");
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    QCOMPARE(targets(), (QByteArrayList{"PUT /scene/project", "PUT /scene/project"}));
    knowsOnServer(project, R"({"id":"a","name":"new"})");
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::renameToALocalAddressWritesNothing()
{
    const QTemporaryDir directory;
    QVERIFY(QDir(directory.path()).mkpath(QStringLiteral("scene")));
    QFile file(directory.filePath(QStringLiteral("scene/project")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("kept");
    file.close();
    Project project;
    knowsOnServer(project, R"({"id":"a","name":"old"})");
    LoginSession local = session();
    local.sdkAddr = QUrl::fromLocalFile(directory.path()).toString().toStdWString();
    project.manager.ReflushProjOrgInfo(local);
    MessageLog log;
    project.manager.OnUploadProject(projectNode(L"a", L"new"), nullptr, true);
    QVERIFY(log.warnings().isEmpty());
    QCOMPARE(log.debugs(), QStringList{QStringLiteral(
                               "CProjectInfoMgr::OnUploadProject update project /scene/project falid")});
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("kept"));
}

void TestProjectInfoMgr::unknownProjectSendsNothing()
{
    Project project;
    refresh(project);
    project.manager.OnUploadProject(projectNode(L"never listed", L"n"), nullptr, true);
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestProjectInfoMgr::announcedProjectIsAddedEvenIfKnown()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    knowsOnServer(project, R"({"id":"a","name":"n"})");
    project.manager.OnUploadProject(projectNode(L"a", L"n"), nullptr, true);
    QCOMPARE(targets(), QByteArrayList{"POST /scene/project"});
}

void TestProjectInfoMgr::handlerDuringTheAddSeesNeither()
{
    Project project;
    refresh(project);
    project.manager.AddLocalProject(projectRef(L"a"));
    ProjectRef found;
    duringItsWait([&] { project.manager.GetProjectInfo(L"a", found); },
                  [&] { project.manager.OnUploadProject(projectNode(L"a", L"n"), nullptr, true); });
    QVERIFY(found.id.empty());
}

void TestProjectInfoMgr::bindingsToTheByte()
{
    Project project;
    refresh(project);
    project.manager.OnUploadSdkProperty(QStringLiteral("s1"), {{"g3", "SN3"}, {"g1", "SN1"}, {"g2", ""}});
    QCOMPARE(targets(), (QByteArrayList{"POST " + DeletePath.toLatin1(), "POST " + BatchPath.toLatin1()}));
    const QVector<LoggedRequest> requests = m_services.log().requests();
    QCOMPARE(requests.at(0).body, QByteArray());
    QCOMPARE(requests.at(0).header("Content-Type"), QByteArray("application/json"));
    QCOMPARE(requests.at(1).body, QByteArray("[\n    {\n    },\n    {\n    },\n    {\n    }\n]\n"));
    QCOMPARE(requests.at(1).header("Content-Type"), QByteArray("application/json"));
}

void TestProjectInfoMgr::noBindingsSendAnEmptyArray()
{
    Project project;
    refresh(project);
    project.manager.OnUploadSdkProperty(QStringLiteral("s1"), {});
    QCOMPARE(m_services.log().requests().size(), 2);
    QCOMPARE(m_services.log().requests().at(1).body, QByteArray("[\n]\n"));
}

void TestProjectInfoMgr::emptySceneProjectGoesOutAsItIs()
{
    m_services.setReply("POST", QStringLiteral("/equipment/bind/deleteAll/"), json("{}"));
    m_services.setReply("POST", QStringLiteral("/equipment/bind/batchAdd/"), json("{}"));
    Project project;
    refresh(project);
    project.manager.OnUploadSdkProperty({}, {});
    QCOMPARE(targets(),
             (QByteArrayList{"POST /equipment/bind/deleteAll/", "POST /equipment/bind/batchAdd/"}));
}

void TestProjectInfoMgr::sceneProjectIsNotEscaped()
{
    m_services.setReply("POST", QStringLiteral("/equipment/bind/deleteAll/a/b%2F"), json("{}"));
    m_services.setReply("POST", QStringLiteral("/equipment/bind/batchAdd/a/b%2F"), json("{}"));
    Project project;
    refresh(project);
    project.manager.OnUploadSdkProperty(QStringLiteral("a/b%2F?c=d"), {});
    QCOMPARE(targets(), (QByteArrayList{"POST /equipment/bind/deleteAll/a/b%2F?c=d",
                                        "POST /equipment/bind/batchAdd/a/b%2F?c=d"}));
}

void TestProjectInfoMgr::refusedDeleteIsTheOnlyRequest()
{
    Project project;
    refresh(project);
    m_services.setReply("POST", DeletePath, json("{}", 500));
    MessageLog log;
    project.manager.OnUploadSdkProperty(QStringLiteral("s1"), {{"g", "s"}});
    QCOMPARE(targets(), QByteArrayList{"POST " + DeletePath.toLatin1()});
    QCOMPARE(log.debugs().size(), 1);
}

void TestProjectInfoMgr::tickAsksTheHeartbeat()
{
    Project project;
    refresh(project);
    const int replies = sharedNetworkManager()->findChildren<QNetworkReply*>().size();
    MessageLog log;
    project.tick();
    QCOMPARE(targets(), QByteArrayList{"GET /org/heartbeat"});
    QVERIFY(m_services.log().requests().constFirst().header("Content-Type").isNull());
    QVERIFY(log.entries().isEmpty());
    QVERIFY(project.messages.first.isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(sharedNetworkManager()->findChildren<QNetworkReply*>().size(), replies + 1);
}

void TestProjectInfoMgr::tickReadsTheAddressTolerantly()
{
    Project project;
    LoginSession odd = session();
    odd.sdkAddr += L"/a b";
    project.manager.ReflushProjOrgInfo(odd);
    m_services.log().clear();
    project.tick();
    QCOMPARE(targets(), QByteArrayList{"GET /a%20b/org/heartbeat"});
}

void TestProjectInfoMgr::pushedOutIsTold_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("1007") << 403 << QByteArray(R"({"infoCode":"1007"})");
    QTest::newRow("1002") << 401 << QByteArray(R"({"infoCode":"1002","message":"x"})");
    QTest::newRow("500") << 500 << QByteArray(R"({"infoCode":"1007"})");
}

void TestProjectInfoMgr::pushedOutIsTold()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(body, status));
    MessageLog log;
    project.tick();
    QCOMPARE(project.messages.first, QStringList{PushedOut});
    QCOMPARE(project.messages.others, 0);
    QCOMPARE(log.warnings().size(), 1);
    QCOMPARE(log.entries().size(), 1);
}

void TestProjectInfoMgr::otherRepliesTellNothing_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("warnings");
    QTest::newRow("success with a code") << 200 << QByteArray(R"({"infoCode":"1007"})") << 0;
    QTest::newRow("success without JSON") << 200 << QByteArray("x") << 0;
    QTest::newRow("number") << 401 << QByteArray(R"({"infoCode":1007})") << 1;
    QTest::newRow("other code") << 401 << QByteArray(R"({"infoCode":"1001"})") << 1;
    for (const char* code : {"1007 ", " 1007", "10070", "01007", "1002\\n", "10020"})
        QTest::addRow("nearly: %s", code) << 401 << QByteArray(R"({"infoCode":")") + code + R"("})" << 1;
    QTest::newRow("no code") << 401 << QByteArray("{}") << 1;
    QTest::newRow("array") << 401 << QByteArray(R"(["1007"])") << 1;
    QTest::newRow("no JSON") << 401 << QByteArray("<html/>") << 2;
    QTest::newRow("no body") << 401 << QByteArray() << 2;
}

void TestProjectInfoMgr::otherRepliesTellNothing()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QFETCH(int, warnings);
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(body, status));
    MessageLog log;
    project.tick();
    QVERIFY(project.messages.first.isEmpty());
    QCOMPARE(log.warnings().size(), warnings);
    QCOMPARE(log.entries().size(), warnings);
    if (warnings == 2) {
        QCOMPARE(log.warnings().at(1), QStringLiteral("parse json failed: illegal value"));
        QCOMPARE(log.entries().at(1).file, QStringLiteral("project/projectinfomgr.cpp"));
    }
}

void TestProjectInfoMgr::tickWithoutMessageManagerIsQuiet()
{
    Project project;
    refresh(project);
    project.plugin.messageMgr = nullptr;
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1007"})", 401));
    MessageLog log;
    project.tick();
    QCOMPARE(log.warnings().size(), 1);
}

void TestProjectInfoMgr::tickWithoutAnAddressFails()
{
    Project project;
    MessageLog log;
    project.manager.ReflushProjOrgInfo({});
    log.clear();
    project.tick();
    QCOMPARE(log.warnings(), (QStringList{QStringLiteral("Protocol \"\" is unknown"),
                                          QStringLiteral("parse json failed: illegal value")}));
}

void TestProjectInfoMgr::tickNeedsNoPluginUnlessPushedOut()
{
    Project project;
    project.manager.SetPlugin(nullptr);
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json("{}", 401));
    MessageLog log;
    project.tick();
    QCOMPARE(log.warnings().size(), 1);
}

//! Hosts must call SetPlugin first. Otherwise a push-out ends the process, so the test uses a child process.
void TestProjectInfoMgr::pushOutWithoutAPluginEndsTheProcess()
{
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1007"})", 401));
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(NoPluginVariable), m_services.editorUrl());
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), QStringList());
    // The services have their own threads, so they reply while this thread waits.
    QVERIFY(process.waitForFinished(60000));
    QVERIFY(process.exitStatus() == QProcess::CrashExit || process.exitCode() != 0);
    QCOMPARE(targets(), (QByteArrayList{"GET /org/tree", "GET /org/heartbeat"}));
}

void TestProjectInfoMgr::tickAsDeepAsTheParserAllows()
{
    constexpr int deepest = 1023;
    const auto reply = [](int levels) {
        return json(R"({"infoCode":"1007","further":)" + QByteArray("[").repeated(levels) +
                        QByteArray("]").repeated(levels) + "}",
                    401);
    };
    Project project;
    refresh(project);
    MessageLog log;
    m_services.setReply("GET", HeartbeatPath, reply(deepest));
    project.tick();
    QCOMPARE(project.messages.first, QStringList{PushedOut});
    log.clear();
    m_services.setReply("GET", HeartbeatPath, reply(deepest + 1));
    project.tick();
    QCOMPARE(project.messages.first.size(), 1);
    QCOMPARE(log.warnings().size(), 2);
    QCOMPARE(log.warnings().at(1), TooDeep);
}

//! The tick has no timeout: it waits until the service replies.
void TestProjectInfoMgr::tickGoesOnWhenAStalledReplyArrives()
{
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1002"})", 401));
    bool toldBefore = true;
    MessageLog log;
    duringItsWait([&] { toldBefore = !project.messages.first.isEmpty(); }, [&] { project.tick(); });
    QVERIFY(!toldBefore);
    QCOMPARE(project.messages.first, QStringList{PushedOut});
}

void TestProjectInfoMgr::eachTickTellsAgain()
{
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1007"})", 401));
    MessageLog log;
    project.tick();
    project.tick();
    QCOMPARE(project.messages.first, (QStringList{PushedOut, PushedOut}));
}

void TestProjectInfoMgr::tickInsideABlockingCall()
{
    m_services.setReply("GET", ScenePath, json(R"({"data":[{"id":"a"}]})"));
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1002"})", 401));
    m_services.addFault({Fault::Stall, ScenePath, "GET", 0, false});
    QTimer::singleShot(0, this, [&] {
        project.tick();
        m_services.clearFaults();
    });
    MessageLog log;
    std::list<ProjectNode> projects;
    QVERIFY(project.manager.GetServerProjectTree(projects));
    QCOMPARE(project.messages.first, QStringList{PushedOut});
    QCOMPARE(projects.size(), std::size_t(1));
}

void TestProjectInfoMgr::tickInsideATick()
{
    Project project;
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1007"})", 401));
    int toldByTheInner = -1;
    MessageLog log;
    const auto inner = [&] {
        project.tick();
        toldByTheInner = project.messages.first.size();
    };
    duringItsWait(inner, [&] { project.tick(); });
    QCOMPARE(toldByTheInner, 1);
    QCOMPARE(project.messages.first.size(), 2);
    QCOMPARE(targets(), (QByteArrayList{"GET /org/heartbeat", "GET /org/heartbeat"}));
}

void TestProjectInfoMgr::eachRefreshStartsOneMoreTimer()
{
    Project project;
    QVERIFY(timersOf(project.manager).isEmpty());
    refresh(project);
    m_services.addFault({Fault::Refuse, {}, {}, 0, false});
    MessageLog log;
    project.manager.ReflushProjOrgInfo(session());
    const auto timers = timersOf(project.manager);
    QCOMPARE(timers.size(), 2);
    for (const QAbstractEventDispatcher::TimerInfo& timer : timers) {
        QCOMPARE(timer.interval, 10000);
        QCOMPARE(timer.timerType, Qt::CoarseTimer);
    }
}

void TestProjectInfoMgr::noTimerDuringTheFirstRefresh()
{
    Project project;
    int during = -1;
    duringItsWait([&] { during = timersOf(project.manager).size(); },
                  [&] { project.manager.ReflushProjOrgInfo(session()); });
    QCOMPARE(during, 0);
    QCOMPARE(timersOf(project.manager).size(), 1);
}

//! Sends one event of each timer, without the interval of ten seconds.
void TestProjectInfoMgr::twoTimersAskAndTellTwice()
{
    Project project;
    refresh(project);
    refresh(project);
    m_services.setReply("GET", HeartbeatPath, json(R"({"infoCode":"1007"})", 401));
    MessageLog log;
    const auto timers = timersOf(project.manager);
    for (const QAbstractEventDispatcher::TimerInfo& timer : timers) {
        QTimerEvent event(timer.timerId);
        QCoreApplication::sendEvent(&project.manager, &event);
    }
    QCOMPARE(targets(), (QByteArrayList{"GET /org/heartbeat", "GET /org/heartbeat"}));
    QCOMPARE(project.messages.first, (QStringList{PushedOut, PushedOut}));
    // Both timers still run after the message.
    QCOMPARE(timersOf(project.manager).size(), 2);
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet(NoPluginVariable))
        return tickWithoutAPlugin(qEnvironmentVariable(NoPluginVariable));
    TestProjectInfoMgr test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_projectinfomgr.moc"
