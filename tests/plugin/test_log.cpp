#include "bim/bimprojworker.h"
#include "login/addressfiles.h"
#include "login/casform.h"
#include "login/loginactor.h"
#include "project/projectinfomgr.h"
#include "tests/support/accounts.h"
#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "updater/updatehelper.h"
#include "updater/updater.h"
#include "web/downloader.h"
#include "web/webclient.h"

#include <QDir>
#include <QFile>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QQuickView>
#include <QTemporaryDir>
#include <QTimerEvent>
#include <QtTest>

#include <functional>
#include <memory>

using NelvoDevkit::Fault;
using NelvoPlugin::CBimProjWorker;
using NelvoPlugin::CLoginActor;
using NelvoPlugin::CProjectInfoMgr;
using TestSupport::ApplicationFile;

namespace {

constexpr int Ample = 60000; // no test waits that long
const auto Product = QStringLiteral("product");
const auto PackageName = QStringLiteral("package.zip");
const auto User = QStringLiteral("zhangwei");
const auto ServersPath = QStringLiteral("/rs/casLogin/serverUrl");
const auto HeartbeatPath = QStringLiteral("/org/heartbeat");
const auto TreePath = QStringLiteral("/org/tree");
const auto ScenePath = QStringLiteral("/scene/project");
const auto DeletePath = QStringLiteral("/equipment/bind/deleteAll/s");
const auto BatchPath = QStringLiteral("/equipment/bind/batchAdd/s");

//! An action that causes log lines, immediately or later.
using Action = std::function<void()>;

} // namespace

Q_DECLARE_METATYPE(Action)

//! The category of the log lines, by which a host can filter them.
class TestLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyLineHasTheDefaultCategory_data();
    void everyLineHasTheDefaultCategory();

private:
    void fail(const QString& path) { m_services.addFault({Fault::Status, path, {}, 503, false}); }
    void transfer(const QString& file);
    void signIn();
    NelvoSDK::LoginSession session() const;
    //! An action of a manager with a session. Requests to `path` fail during the action.
    Action projects(const QString& path, const std::function<void(CProjectInfoMgr& manager)>& action);
    void readModels(void (CBimProjWorker::*list)(), bool success);
    QString emptyFile() const;
    void check() { m_updater->checkVersion(m_services.updateUrl(), m_services.updates().token(), Product); }
    void download();

    TestSupport::StartedServices m_services;
    QTemporaryDir m_folder;
    QNetworkAccessManager m_manager;
    std::unique_ptr<CDownloader> m_downloader;
    std::unique_ptr<ApplicationFile> m_config;
    std::unique_ptr<ApplicationFile> m_state;
    std::unique_ptr<ApplicationFile> m_defaultServer;
    std::unique_ptr<CUpdater> m_updater;
};

void TestLog::init()
{
    m_services.reset();
    m_services.forgetSessions();
    m_services.packages().add(PackageName, "no archive");
    m_services.updates().setRelease(
        Product, m_services.packageRelease(PackageName, QStringLiteral("1.0.1"), QString()));
    m_config = std::make_unique<ApplicationFile>(QStringLiteral("updateConfig.json"));
    m_config->write(R"({"version": "1.0.0"})");
    m_state = std::make_unique<ApplicationFile>(QStringLiteral("NelvoUpdateState.dat"));
    m_defaultServer = std::make_unique<ApplicationFile>(QStringLiteral("defaultServerAddress.json"));
    m_downloader = std::make_unique<CDownloader>(&m_manager);
    m_updater = std::make_unique<CUpdater>();
}

void TestLog::cleanup()
{
    m_updater.reset();
    m_downloader.reset();
    QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/NelvoUpdate")).removeRecursively();
}

NelvoSDK::LoginSession TestLog::session() const
{
    NelvoSDK::LoginSession made;
    made.sdkAddr = m_services.editorUrl().toStdWString();
    return made;
}

void TestLog::transfer(const QString& file)
{
    QString error;
    QVERIFY(m_downloader->download(m_services.packageUrl(PackageName), file, 1, error, false));
}

void TestLog::signIn()
{
    QQuickView view;
    CLoginActor actor(&view);
    actor.login(User, TestSupport::passwordOf(User), m_services.signInUrl(), {});
    actor.onLogin(m_services.signInUrl(), QStringLiteral("1001"), QStringLiteral("name"));
}

Action TestLog::projects(const QString& path, const std::function<void(CProjectInfoMgr& manager)>& action)
{
    return [this, path, action] {
        CProjectInfoMgr manager;
        manager.ReflushProjOrgInfo(session());
        m_services.setReply("GET", ScenePath, TestSupport::json(R"({"data":[{"id":"theirs","name":"n"}]})"));
        m_services.setReply("POST", DeletePath, {});
        std::list<NelvoSDK::ProjectNode> listed;
        QVERIFY(manager.GetServerProjectTree(listed));
        fail(path);
        action(manager);
    };
}

void TestLog::readModels(void (CBimProjWorker::*list)(), bool success)
{
    qApp->setProperty("sdkAddr", m_services.editorUrl());
    for (const QString& path : {QStringLiteral("/bim/relation/"), QStringLiteral("/bim/relation/dwg")})
        m_services.setReply("GET", path, TestSupport::json("{}", success ? 200 : 503));
    CBimProjWorker worker;
    (worker.*list)();
}

QString TestLog::emptyFile() const
{
    QFile file(m_folder.filePath(QStringLiteral("empty")));
    return file.open(QIODevice::WriteOnly) ? file.fileName() : QString();
}

void TestLog::download()
{
    check();
    m_updater->download();
}

void TestLog::everyLineHasTheDefaultCategory_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QStringList>("lines"); // a part of each expected log line

    const auto row = [](const char* name, const Action& action, const QStringList& lines) {
        QTest::newRow(name) << action << lines;
    };
    row("failed call", [] { httpGet(sharedNetworkManager(), QStringLiteral("nowhere:"), {}, {}, {}); },
        {"Protocol \"nowhere\" is unknown"});
    row("no JSON",
        [this] {
            QJsonObject ignored;
            m_services.setReply("GET", TreePath, {});
            httpGetJson(sharedNetworkManager(), m_services.editorUrl(), TreePath, {}, ignored);
        },
        {"parse json failed: "});
    row("no file", [] { NelvoPlugin::readDefaultServer(); }, {"open file "});
    row("transfer", [this] { transfer(m_folder.filePath(PackageName)); }, {"request finished with code "});
    const auto full = QStringLiteral("/dev/full");
    if (QFile::exists(full))
        row("transfer to a full disk", [this, full] { transfer(full); }, {"write file /dev/full failed: "});

    row("odd page", [] { NelvoPlugin::parsePostResult("<br>"); }, {"query error"});
    row("large page", [] { NelvoPlugin::parsePostResult(QByteArray(5000000, ' ')); }, {"query error"});
    row("sign-in", [this] { signIn(); }, {"{", "epid", "version", "}", "cookiesList: "});
    row("no editor service",
        [this] {
            m_services.setReply("GET", ServersPath, TestSupport::json("[]"));
            signIn();
        },
        {QStringLiteral("获取代理地址失败, 请检查服务器部署")});
    row("no heartbeat",
        [this] {
            fail(HeartbeatPath);
            signIn();
        },
        {"CLoginActor::onLogin getprojList /org/heartbeat falied!"});

    row("tree",
        projects(TreePath, [this](CProjectInfoMgr& manager) { manager.ReflushProjOrgInfo(session()); }),
        {"CProjectInfoMgr::ReflushProjOrgInfo /org/tree error!"});
    row("list of projects",
        projects(ScenePath,
                 [](CProjectInfoMgr& manager) {
                     std::list<NelvoSDK::ProjectNode> ignored;
                     manager.GetServerProjectTree(ignored);
                 }),
        {"CProjectInfoMgr::GetServerProjectTree getprojList /scene/project falied!"});
    row("new project",
        projects(ScenePath,
                 [](CProjectInfoMgr& manager) {
                     NelvoSDK::ProjectRef announced;
                     announced.id = L"ours";
                     manager.AddLocalProject(announced);
                     NelvoSDK::ProjectNode project;
                     project.id = announced.id;
                     project.attrs[L"deptId"] = L"d";
                     manager.OnUploadProject(project, nullptr, true);
                 }),
        {"CProjectInfoMgr::OnUploadProject add project /scene/project falid"});
    row("renamed project",
        projects(ScenePath,
                 [](CProjectInfoMgr& manager) {
                     NelvoSDK::ProjectNode project;
                     project.id = L"theirs";
                     manager.OnUploadProject(project, nullptr, true);
                 }),
        {"CProjectInfoMgr::OnUploadProject update project /scene/project falid"});
    const auto bind = [](CProjectInfoMgr& manager) { manager.OnUploadSdkProperty(QStringLiteral("s"), {}); };
    row("old bindings", projects(DeletePath, bind),
        {"CProjectInfoMgr::OnUploadSdkProperty /equipment/bind/deleteAll/ falid !"});
    row("new bindings", projects(BatchPath, bind),
        {"CProjectInfoMgr::OnUploadSdkProperty /equipment/bind/batchUpdate/ falid !"});
    row("watch",
        projects(HeartbeatPath,
                 [](CProjectInfoMgr& manager) {
                     QTimerEvent tick(0);
                     QCoreApplication::sendEvent(&manager, &tick);
                 }),
        {"/org/heartbeat - server replied: ", "parse json failed: "});

    row("models", [this] { readModels(&CBimProjWorker::getBimProjList, true); }, {"QJsonObject("});
    row("no models", [this] { readModels(&CBimProjWorker::getBimProjList, false); },
        {"CProjectInfoMgr::getBimProjList getprojList /scene/project falied!"});
    row("no drawings", [this] { readModels(&CBimProjWorker::getDWGBimProjList, false); },
        {"CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!"});

    row("missing package", [] { checkMd5(QStringLiteral("missing"), {}); }, {" open failed "});
    row("empty package", [this] { checkMd5(emptyFile(), {}); }, {" map failed"});
    row("new release", [this] { check(); }, {"1.0.1"});
    row("package", [this] { download(); }, {QStringLiteral("下载完成，校验MD5"), QStringLiteral("校验通过")});
    row("other package",
        [this] {
            m_services.packages().add(PackageName, "another");
            download();
        },
        {QStringLiteral("校验失败"), QStringLiteral("重试")});
    row("no package",
        [this] {
            fail(QUrl(m_services.packageUrl(PackageName)).path());
            download();
        },
        {QStringLiteral("下载失败")});
    row("two downloads",
        [this] {
            download();
            m_updater->download();
        },
        {"download already exist: "});
    row("no archive", [this] { m_updater->upgrade(); },
        {QStringLiteral("解压中"), QStringLiteral("解压失败")});

    // The last row: this sign-in quits the application, which would end the waits of later rows.
    row("refused sign-in without a window",
        [] {
            QQuickView view;
            CLoginActor(&view).loginFromCommandLine({}, {}, {}, {});
        },
        {"login failed: "});
}

void TestLog::everyLineHasTheDefaultCategory()
{
    QFETCH(Action, action);
    QFETCH(QStringList, lines);
    const TestSupport::MessageLog log;
    action();
    for (const QString& line : lines) {
        QTRY_VERIFY2_WITH_TIMEOUT(!log.categories(line).isEmpty(), qPrintable(line), Ample);
        QCOMPARE(log.categories(line), QStringList{"default"});
    }
}

QTEST_MAIN(TestLog)
#include "test_log.moc"
