#include "host/logfilter.h"
#include "host/messagecapture.h"
#include "host/projectdesk.h"

#include "pluginstandin.h"

#include <QtTest>

#include <memory>

using NelvoDevkit::LogEntry;
using NelvoDevkit::LogFilter;
using NelvoDevkit::LogModel;
using NelvoDevkit::MessageCapture;
using NelvoDevkit::ProjectDesk;

//! The host's list of the enterprise's projects, with a stand-in for the manager.
class TestHostProjects : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void managerGetsItsPlugin();
    void signInReadsEverything();
    void nothingWithinTheObserversCall();
    void secondSignInShowsItsOwnUnits();
    void missingTreeIsTold();
    void sessionWithoutServiceIsNotInstalled();
    void sessionWithoutEnterprise();
    void closedSessionShowsNothing();
    void refreshStartsNoWatch();
    void failedReadKeepsTheList();
    void newProjectIsAnnounced();
    void newProjectNeedsNameAndDepartment();
    void renamedLocalProject();
    void removedLocalProject();
    void uploadedProject();
    void failedUploadStaysLocal();
    void failedUploadThatArrivedAfterAll();
    void renamedOnTheService();
    void failedRenameIsTold();
    void bindings();
    void foreignProjectsGo();
    void detailsNameTheEnterprise();
    void eventsWhileBlockingWait();
    void pluginsOwnLinesAreInTheLog();

private:
    ProjectInfoStandIn& manager() { return m_plugin->projects; }
    //! Signs in to an enterprise and waits for the host's operations.
    void signIn(const std::wstring& epId = L"1001");
    void createProject(const QString& name);
    bool settle() const;
    QStringList logged(LogEntry::Kind kind) const;

    std::unique_ptr<PluginStandIn> m_plugin;
    std::unique_ptr<LogModel> m_log;
    std::unique_ptr<ProjectDesk> m_desk;
};

namespace {

NelvoSDK::LoginSession sessionOf(const std::wstring& epId)
{
    NelvoSDK::LoginSession session;
    session.sdkAddr = L"http://editor";
    session.loggedIn = true;
    session.extra = {{L"epId", epId}, {L"epName", L"enterprise " + epId}};
    return session;
}

NelvoSDK::ProjectNode serverProject(const std::wstring& id, const std::wstring& name)
{
    NelvoSDK::ProjectNode project;
    project.id = id;
    project.name = name;
    project.attrs = {{L"deptId", L"d"}, {L"deptName", L"department"}};
    return project;
}

QStringList shown(const QAbstractItemModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, 0).data().toString());
    return names;
}

QString idInRow(const QAbstractItemModel& model, int row)
{
    return model.index(row, 0).data(NelvoDevkit::ProjectList::IdRole).toString();
}

QString detail(const ProjectDesk& desk, const QString& label)
{
    for (const QVariant& row : desk.details()) {
        if (row.toMap().value(QStringLiteral("label")) == label)
            return row.toMap().value(QStringLiteral("value")).toString();
    }
    return {};
}

} // namespace

void TestHostProjects::init()
{
    m_plugin = std::make_unique<PluginStandIn>();
    m_log = std::make_unique<LogModel>();
    m_desk = std::make_unique<ProjectDesk>(*m_plugin, *m_log);
    manager().rootName = QStringLiteral("root");
    manager().firstLevel = QStringList{"u1", "u2"};
    manager().serverProjects = {serverProject(L"s-1", L"first"), serverProject(L"s-2", L"second")};
}

void TestHostProjects::cleanup()
{
    m_desk.reset();
    m_log.reset();
    m_plugin.reset();
}

void TestHostProjects::signIn(const std::wstring& epId)
{
    m_desk->openSession(sessionOf(epId));
    QVERIFY(settle());
}

void TestHostProjects::createProject(const QString& name)
{
    m_desk->chooseDepartment(QStringLiteral("d-7"), QStringLiteral("department 7"));
    m_desk->createProject(name);
    QVERIFY(settle());
}

bool TestHostProjects::settle() const
{
    return QTest::qWaitFor([this] { return !m_desk->queue()->isBusy(); }, 30000);
}

QStringList TestHostProjects::logged(LogEntry::Kind kind) const
{
    QCoreApplication::processEvents(); // the log adds its entries in the event loop
    QStringList texts;
    for (int row = 0; row < m_log->rowCount(); ++row) {
        if (m_log->entry(row).kind == kind)
            texts.append(m_log->entry(row).text);
    }
    return texts;
}

void TestHostProjects::managerGetsItsPlugin()
{
    QCOMPARE(manager().plugin, static_cast<NelvoSDK::INelvoSDKPlugin*>(m_plugin.get()));
    QCOMPARE(manager().calls, QStringList("SetPlugin"));
}

void TestHostProjects::signInReadsEverything()
{
    signIn();
    QCOMPARE(manager().calls, (QStringList{"SetPlugin", "ReflushProjOrgInfo", "RemoveForeignProjects",
                                           "GetServerProjectTree"}));
    QVERIFY(manager().session.extra == sessionOf(L"1001").extra);
    QCOMPARE(shown(*m_desk->tree()), (QStringList{"root", "u1", "u2"}));
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"first", "second"}));
    QVERIFY(m_desk->isReady());
}

void TestHostProjects::nothingWithinTheObserversCall()
{
    m_desk->openSession(sessionOf(L"1001"));
    QCOMPARE(manager().calls, QStringList("SetPlugin"));
    QVERIFY(m_desk->queue()->isBusy());
    QVERIFY(settle());
}

void TestHostProjects::secondSignInShowsItsOwnUnits()
{
    signIn();
    manager().rootName = QStringLiteral("other");
    manager().firstLevel = QStringList{"v1"};
    QSignalSpy installed(m_desk.get(), &ProjectDesk::sessionInstalled);
    signIn(L"1002");
    QCOMPARE(installed, QList<QVariantList>{{2}});
    QCOMPARE(shown(*m_desk->tree()), (QStringList{"other", "v1"}));
    m_desk->refresh();
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->tree()), (QStringList{"other", "v1"}));
}

void TestHostProjects::missingTreeIsTold()
{
    const QString problem = QStringLiteral("no organisation tree has arrived since the sign-in");
    manager().rootName.clear();
    manager().firstLevel.clear();
    signIn();
    QCOMPARE(m_desk->tree()->unitCount(), 0);
    QCOMPARE(logged(LogEntry::Kind::Warning), QStringList(problem));
    manager().rootName = QStringLiteral("root");
    manager().firstLevel = QStringList("u1");
    signIn();
    // The next enterprise's tree does not arrive. The host does not show the previous tree.
    manager().firstLevel.clear();
    signIn(L"1002");
    QCOMPARE(m_desk->tree()->unitCount(), 0);
    QCOMPARE(logged(LogEntry::Kind::Warning), (QStringList{problem, problem}));
}

void TestHostProjects::sessionWithoutServiceIsNotInstalled()
{
    NelvoSDK::LoginSession session;
    session.loggedIn = true;
    m_desk->openSession(session);
    QVERIFY(settle());
    QCOMPARE(manager().calls, QStringList("SetPlugin"));
    QVERIFY(!m_desk->isReady());
    QCOMPARE(logged(LogEntry::Kind::Warning).size(), 1);
}

//! Operations of the manager that need the enterprise throw without one, so the host does not call them.
void TestHostProjects::sessionWithoutEnterprise()
{
    signIn();
    createProject(QStringLiteral("mine"));
    NelvoSDK::LoginSession session = sessionOf(L"1001");
    session.extra.clear();
    m_desk->openSession(session);
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("mine"));
    m_desk->select(QStringLiteral("s-1"));
    QVERIFY(settle());
    QCOMPARE(detail(*m_desk, QStringLiteral("名称")), QStringLiteral("first"));
    QCOMPARE(detail(*m_desk, QStringLiteral("企业")), QString());
    QCOMPARE(logged(LogEntry::Kind::Warning),
             QStringList("the session names no enterprise: local projects stay"));
}

void TestHostProjects::closedSessionShowsNothing()
{
    signIn();
    createProject(QStringLiteral("mine"));
    m_desk->closeSession();
    QVERIFY(settle());
    QVERIFY(!m_desk->isReady());
    QCOMPARE(m_desk->tree()->rowCount(), 0);
    QCOMPARE(m_desk->serverProjects()->rowCount(), 0);
    QCOMPARE(m_desk->selectedId(), QString());
    QVERIFY(m_desk->details().isEmpty());
    QCOMPARE(m_desk->departmentId(), QString());
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("mine"));
}

void TestHostProjects::refreshStartsNoWatch()
{
    signIn();
    manager().calls.clear();
    manager().serverProjects.push_back(serverProject(L"s-3", L"third"));
    m_desk->refresh();
    QVERIFY(settle());
    QCOMPARE(manager().calls, QStringList("GetServerProjectTree"));
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"first", "second", "third"}));
}

void TestHostProjects::failedReadKeepsTheList()
{
    signIn();
    manager().answers = false;
    m_desk->refresh();
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"first", "second"}));
    QCOMPARE(logged(LogEntry::Kind::Warning), QStringList("IProjectInfoMgr::GetServerProjectTree: false"));
}

void TestHostProjects::newProjectIsAnnounced()
{
    signIn();
    createProject(QStringLiteral("  mine "));
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("mine"));
    const QString id = idInRow(*m_desk->localProjects(), 0);
    QVERIFY(!id.isEmpty());
    QCOMPARE(m_desk->selectedId(), id);
    const NelvoSDK::ProjectRef announced = manager().announced.at(id.toStdWString());
    QVERIFY(announced.name == L"mine");
    QVERIFY(announced.attrs.at(L"deptId") == L"d-7");
    QVERIFY(announced.attrs.at(L"deptName") == L"department 7");
    QVERIFY(announced.attrs.at(L"epId") == L"1001");
    createProject(QStringLiteral("mine"));
    QVERIFY(idInRow(*m_desk->localProjects(), 1) != id);
}

void TestHostProjects::newProjectNeedsNameAndDepartment()
{
    signIn();
    m_desk->createProject(QStringLiteral("mine"));
    m_desk->chooseDepartment(QStringLiteral("d-7"), QStringLiteral("department 7"));
    m_desk->createProject(QStringLiteral("  "));
    QVERIFY(settle());
    QCOMPARE(m_desk->localProjects()->rowCount(), 0);
    QVERIFY(manager().announced.empty());
}

void TestHostProjects::renamedLocalProject()
{
    signIn();
    createProject(QStringLiteral("mine"));
    const QString id = m_desk->selectedId();
    m_desk->renameLocalProject(id, QStringLiteral("renamed"));
    m_desk->renameLocalProject(id, QStringLiteral(" "));
    m_desk->renameLocalProject(QStringLiteral("nobody"), QStringLiteral("x"));
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("renamed"));
    QVERIFY(manager().announced.at(id.toStdWString()).name == L"renamed");
    QCOMPARE(detail(*m_desk, QStringLiteral("名称")), QStringLiteral("renamed"));
}

void TestHostProjects::removedLocalProject()
{
    signIn();
    createProject(QStringLiteral("mine"));
    m_desk->removeLocalProject(m_desk->selectedId());
    QVERIFY(settle());
    QCOMPARE(m_desk->localProjects()->rowCount(), 0);
    QVERIFY(manager().announced.empty());
    QCOMPARE(m_desk->selectedId(), QString());
    QVERIFY(m_desk->details().isEmpty());
}

void TestHostProjects::uploadedProject()
{
    signIn();
    createProject(QStringLiteral("mine"));
    manager().upload = [this](const NelvoSDK::ProjectNode& project) {
        QVERIFY(project.attrs.at(L"deptId") == L"d-7");
        manager().serverProjects.push_back(project);
    };
    manager().calls.clear();
    m_desk->uploadLocalProject(m_desk->selectedId());
    m_desk->uploadLocalProject(QStringLiteral("nobody"));
    QVERIFY(settle());
    QCOMPARE(manager().calls, (QStringList{"OnUploadProject mine", "AddLocalProject mine",
                                           "GetServerProjectTree", "RemoveLocalProject"}));
    QCOMPARE(m_desk->localProjects()->rowCount(), 0);
    QVERIFY(manager().announced.empty());
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"first", "second", "mine"}));
    QVERIFY(logged(LogEntry::Kind::Warning).isEmpty());
}

void TestHostProjects::failedUploadStaysLocal()
{
    signIn();
    createProject(QStringLiteral("mine"));
    const QString id = m_desk->selectedId();
    m_desk->uploadLocalProject(id);
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("mine"));
    QVERIFY(manager().announced.count(id.toStdWString()) == 1);
    QCOMPARE(logged(LogEntry::Kind::Warning), QStringList("\"mine\" is not on the service; it stays local"));
}

void TestHostProjects::failedUploadThatArrivedAfterAll()
{
    signIn();
    createProject(QStringLiteral("mine"));
    manager().upload = [this](const NelvoSDK::ProjectNode& project) {
        manager().serverProjects.push_back(project);
    };
    manager().answers = false;
    m_desk->uploadLocalProject(m_desk->selectedId());
    QVERIFY(settle());
    QCOMPARE(m_desk->localProjects()->rowCount(), 1);
    manager().answers = true;
    m_desk->refresh();
    QVERIFY(settle());
    QCOMPARE(m_desk->localProjects()->rowCount(), 0);
    QVERIFY(manager().announced.empty());
}

void TestHostProjects::renamedOnTheService()
{
    signIn();
    manager().upload = [this](const NelvoSDK::ProjectNode& project) {
        QVERIFY(project.id == L"s-1");
        manager().serverProjects.front().name = project.name;
    };
    m_desk->select(QStringLiteral("s-1"));
    m_desk->renameServerProject(QStringLiteral("s-1"), QStringLiteral(" renamed "));
    m_desk->renameServerProject(QStringLiteral("s-1"), QStringLiteral(" "));
    m_desk->renameServerProject(QStringLiteral("nobody"), QStringLiteral("x"));
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"renamed", "second"}));
    QCOMPARE(manager().calls.filter(QStringLiteral("OnUpload")), QStringList("OnUploadProject renamed"));
    QCOMPARE(detail(*m_desk, QStringLiteral("名称")), QStringLiteral("renamed"));
    QVERIFY(logged(LogEntry::Kind::Warning).isEmpty());
}

void TestHostProjects::failedRenameIsTold()
{
    signIn();
    m_desk->renameServerProject(QStringLiteral("s-1"), QStringLiteral("renamed"));
    QVERIFY(settle());
    QCOMPARE(shown(*m_desk->serverProjects()), (QStringList{"first", "second"}));
    QCOMPARE(logged(LogEntry::Kind::Warning), QStringList("the service does not call it \"renamed\""));
}

void TestHostProjects::bindings()
{
    signIn();
    m_desk->uploadBindings(); // does nothing without a selected project
    m_desk->select(QStringLiteral("s-1"));
    NelvoDevkit::DeviceList& devices = *m_desk->devices();
    devices.setData(devices.index(1), QStringLiteral("SN-1"), NelvoDevkit::DeviceList::SerialRole);
    const QMap<QString, QString> expected = devices.bindings();
    QCOMPARE(expected.size(), 1);
    m_desk->uploadBindings();
    m_desk->select(QStringLiteral("s-2")); // does not change the queued upload
    QVERIFY(settle());
    QCOMPARE(manager().calls.filter(QStringLiteral("OnUpload")), QStringList("OnUploadSdkProperty s-1"));
    QCOMPARE(manager().bindings, expected);
}

void TestHostProjects::foreignProjectsGo()
{
    signIn(L"1001");
    createProject(QStringLiteral("theirs"));
    signIn(L"1002");
    QCOMPARE(m_desk->localProjects()->rowCount(), 0);
    QVERIFY(manager().announced.empty());
    QVERIFY(logged(LogEntry::Kind::Host)
                .contains(QStringLiteral(
                    "IProjectInfoMgr::RemoveForeignProjects: \"theirs\" belongs to \"enterprise 1001\"")));

    createProject(QStringLiteral("ours"));
    signIn(L"1002");
    QCOMPARE(shown(*m_desk->localProjects()), QStringList("ours"));
    QCOMPARE(int(manager().announced.size()), 1);
}

void TestHostProjects::detailsNameTheEnterprise()
{
    signIn();
    QSignalSpy selected(m_desk.get(), &ProjectDesk::selectionChanged);
    m_desk->select(QStringLiteral("s-2"));
    QCOMPARE(selected.size(), 1);
    QVERIFY(settle());
    QCOMPARE(detail(*m_desk, QStringLiteral("名称")), QStringLiteral("second"));
    QCOMPARE(detail(*m_desk, QStringLiteral("企业")), QStringLiteral("enterprise 1001（1001）"));
    QCOMPARE(detail(*m_desk, QStringLiteral("部门")), QStringLiteral("department"));
    m_desk->select(QStringLiteral("nobody"));
    QVERIFY(settle());
    QVERIFY(m_desk->details().isEmpty());
}

//! The stand-in ends the test if the host calls it inside another call.
void TestHostProjects::eventsWhileBlockingWait()
{
    signIn();
    int blocked = 0;
    manager().whileBlocking = [this, &blocked] {
        if (++blocked > 2)
            return;
        m_desk->refresh();
        m_desk->select(QStringLiteral("s-1"));
        for (int turn = 0; turn < 10; ++turn)
            QCoreApplication::processEvents();
    };
    manager().calls.clear();
    m_desk->refresh();
    QVERIFY(settle());
    QCOMPARE(manager().calls,
             (QStringList{"GetServerProjectTree", "GetServerProjectTree", "GetServerProjectTree"}));
}

//! The plug-in reports failures only in the log, mostly as debug messages.
void TestHostProjects::pluginsOwnLinesAreInTheLog()
{
    LogFilter shownLog(*m_log);
    const MessageCapture capture(*m_log);
    signIn();
    createProject(QStringLiteral("mine"));
    const char line[] = "CProjectInfoMgr::OnUploadProject add project /scene/project falid";
    manager().upload = [&line](const NelvoSDK::ProjectNode&) { qDebug("%s", line); };
    QTest::ignoreMessage(QtDebugMsg, line);
    m_desk->uploadLocalProject(m_desk->selectedId());
    QVERIFY(settle());
    QTRY_VERIFY(shown(shownLog).contains(QString::fromLatin1(line)));
}

QTEST_MAIN(TestHostProjects)
#include "test_host_projects.moc"
