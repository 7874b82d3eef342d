#include "docs/snippets/devices.h"
#include "docs/snippets/host.h"
#include "docs/snippets/loading.h"
#include "docs/snippets/models.h"
#include "docs/snippets/projects.h"
#include "docs/snippets/update.h"
#include "tests/e2e/loginform.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/accounts.h"
#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <NelvoSDK/ILoginMgr.h>

#include <QDir>
#include <QGuiApplication>
#include <QQuickView>
#include <QSignalSpy>
#include <QtTest>

#include <optional>

using TestSupport::json;

namespace {

const auto User = QStringLiteral("zhangwei");
constexpr qint64 Enterprise = 1001;
const std::wstring Department = L"1001-11";
constexpr int WaitMilliseconds = 30000;

NelvoSDK::ProjectNode newProject(const std::wstring& id, const std::wstring& name)
{
    NelvoSDK::ProjectNode project;
    project.id = id;
    project.name = name;
    project.attrs = {{L"deptId", Department}};
    return project;
}

} // namespace

//! The code of the integration guide at work, and what the guide says of it.
class TestSnippets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void missingLibraryIsTold();
    void ordersWaitForOneAnother();
    void failedOrderIsTold();
    void sessionReachesTheHost();
    void missingServiceIsTold();
    void cookieWithAnExpiryDateIsNotSent();
    void uploadIsReadAgain();
    void bindingsReachTheService();
    void dialogHandsAModelOver();
    void pushOutIsToldOnce();
    void secondSignInWorksOn();
    void updateIsOfferedAndDownloaded();
    void checkOnTheFormPagePublishesAnEmptySession();
    void updatePageShowsAfterTheSignIn();

private:
    //! Waits for the login window and sends its form off. False if it didn't come.
    bool sendForm() const;
    //! The same, and waits for the session.
    bool signIn();
    void beat() const;
    NelvoSDK::IProjectInfoMgr& projects() const { return *m_plugin->GetProjectInfoMgr(); }

    std::optional<TestSupport::MessageLog> m_log;
    std::optional<TestSupport::ApplicationFile> m_cache;
    std::optional<TestSupport::ApplicationFile> m_version;
    std::optional<TestSupport::ApplicationFile> m_updateState;
    std::optional<TestSupport::StartedServices> m_services;
    NelvoSDK::INelvoSDKPlugin* m_plugin = nullptr;
    std::optional<Snippets::Host> m_host;
    std::optional<QSignalSpy> m_installed;
};

void TestSnippets::init()
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    m_log.emplace();
    m_cache.emplace(QStringLiteral("loginchache.json"));
    m_version.emplace(QStringLiteral("updateConfig.json"));
    m_version->write(R"({"version": "1.0.0"})");
    m_updateState.emplace(QStringLiteral("NelvoUpdateState.dat"));
    m_services.emplace();
    m_plugin = Snippets::loadPlugin(QStringLiteral(NELVO_APP_DIR));
    QVERIFY(m_plugin);
    m_host.emplace(*m_plugin, nullptr);
    m_installed.emplace(&*m_host, &Snippets::Host::sessionInstalled);
}

void TestSnippets::cleanup()
{
    m_installed.reset();
    m_host.reset();
    m_services.reset();
    m_updateState.reset();
    m_version.reset();
    m_cache.reset();
    m_log.reset();
    QDir(QCoreApplication::applicationDirPath() + QStringLiteral("/NelvoUpdate")).removeRecursively();
}

bool TestSnippets::sendForm() const
{
    const auto isShown = [] { return E2e::loginWindow() && E2e::loginWindow()->isVisible(); };
    if (!QTest::qWaitFor(isShown, WaitMilliseconds) || !UserInput::activate(E2e::loginWindow()))
        return false;
    E2e::submitForm(E2e::loginWindow(), User, TestSupport::passwordOf(User), m_services->signInUrl());
    return true;
}

bool TestSnippets::signIn()
{
    const int before = m_installed->size();
    const auto isInstalled = [&] { return m_installed->size() == before + 1; };
    return sendForm() && QTest::qWaitFor(isInstalled, WaitMilliseconds);
}

//! A tick of the watch, without waiting for its time.
void TestSnippets::beat() const
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(dynamic_cast<QObject*>(&projects()), &event);
}

void TestSnippets::missingLibraryIsTold()
{
    QVERIFY(!Snippets::loadPlugin(QStringLiteral("/nowhere")));
    const QStringList reasons = m_log->texts(QtCriticalMsg);
    QCOMPARE(reasons.size(), 1);
    QVERIFY2(QDir::fromNativeSeparators(reasons.constFirst())
                 .startsWith(QStringLiteral("no plug-in: Cannot load library /nowhere")),
             qPrintable(reasons.constFirst()));
}

void TestSnippets::ordersWaitForOneAnother()
{
    QStringList events;
    m_host->orders().add([&] {
        m_host->orders().add([&] { events.append(QStringLiteral("second")); });
        QCoreApplication::processEvents(); // as the plug-in does while it waits
        events.append(QStringLiteral("first"));
    });
    QVERIFY(events.isEmpty());
    QTRY_COMPARE(events, (QStringList{QStringLiteral("first"), QStringLiteral("second")}));
}

void TestSnippets::failedOrderIsTold()
{
    QSignalSpy failed(&m_host->orders(), &Snippets::Orders::failed);
    bool hasGoneOn = false;
    NelvoSDK::ProjectNode withoutDepartment = newProject(L"p-1", L"x");
    withoutDepartment.attrs.clear();
    m_host->orders().add([&] { Snippets::uploadNewProject(projects(), withoutDepartment); });
    m_host->orders().add([&] { hasGoneOn = true; });
    QTRY_VERIFY(hasGoneOn);
    QCOMPARE(failed.value(0).value(0).toString(), QStringLiteral("invalid map<K, T> key"));
}

void TestSnippets::sessionReachesTheHost()
{
    m_host->start();
    QVERIFY(signIn());
    const auto listed = Snippets::listProjects(projects());
    QVERIFY(listed);
    QCOMPARE(int(listed->size()), m_services->editorData().projects(Enterprise).size());
    QCOMPARE(qApp->property("sdkAddr").toString(), m_services->editorUrl());
    QCOMPARE(qApp->property("epId").toString(), QString::number(Enterprise));
    QVERIFY(!qApp->property("iotToken").toString().isEmpty());
    QVERIFY(!qApp->property("iotUrl").toString().isEmpty());
}

void TestSnippets::missingServiceIsTold()
{
    m_services->setReply("GET", QStringLiteral("/rs/casLogin/serverUrl"), json("[]"));
    QSignalSpy missing(&*m_host, &Snippets::Host::noService);
    m_host->start();
    QVERIFY(sendForm());
    QTRY_COMPARE_WITH_TIMEOUT(missing.size(), 1, WaitMilliseconds);
    QCOMPARE(m_installed->size(), 0);
}

void TestSnippets::cookieWithAnExpiryDateIsNotSent()
{
    const QByteArray dated = "dated=1; Path=/; Expires=Wed, 09-Jun-2100 10:18:14 GMT";
    const QByteArray plain = "plain=1; Path=/";
    m_services->setReply("GET", QStringLiteral("/org/heartbeat"),
                         {200, "application/json", "{}", {{"Set-Cookie", dated}, {"Set-Cookie", plain}}});
    m_host->start();
    QVERIFY(signIn());
    m_services->log().clear();
    Snippets::listProjects(projects()); // refused or not
    QVERIFY(!m_services->log().requests().isEmpty());
    const QByteArray sent = m_services->log().requests().constFirst().header("Cookie");
    QVERIFY2(sent.contains("plain=1") && !sent.contains("dated"), sent.constData());
}

void TestSnippets::uploadIsReadAgain()
{
    m_host->start();
    QVERIFY(signIn());
    QVERIFY(Snippets::uploadNewProject(projects(), newProject(L"scene-new", L"湖滨公园")));
    QVERIFY(Snippets::renameProject(projects(), Snippets::listProjects(projects())->front(), L"改名"));

    m_services->addFault({NelvoDevkit::Fault::Status, QStringLiteral("/scene/project"), "POST", 500, false});
    QVERIFY(!Snippets::uploadNewProject(projects(), newProject(L"scene-lost", L"湖滨公园")));
    m_services->clearFaults();
    QVERIFY(Snippets::uploadNewProject(projects(), newProject(L"scene-lost", L"湖滨公园")));
}

void TestSnippets::bindingsReachTheService()
{
    m_host->start();
    QVERIFY(signIn());
    const auto project = QStringLiteral("scene 1/一");
    Snippets::uploadDevices(projects(), project, {{"g1", "SN1"}, {"g2", "SN2"}});
    QCOMPARE(m_services->editorData().bindings(project).elements, 2);
}

void TestSnippets::dialogHandsAModelOver()
{
    m_host->start();
    QVERIFY(signIn());
    QQuickView window;
    window.setResizeMode(QQuickView::SizeRootObjectToView);
    window.resize(800, 600);
    auto* const scene = new QQuickItem;
    window.setContent({}, nullptr, scene);
    Snippets::Models models(*m_plugin->GetPdsMgr(), window.rootContext(), scene);
    QSignalSpy imports(&models, &Snippets::Models::importWanted);
    QSignalSpy outlines(&models, &Snippets::Models::outlineWanted);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    m_plugin->GetPdsMgr()->InitBimData();
    m_plugin->GetPdsMgr()->OpenBimDialog();

    const auto button = [&window] { return UserInput::findItem(&window, QStringLiteral("downloadButton")); };
    QTRY_VERIFY_WITH_TIMEOUT(button(), WaitMilliseconds);
    UserInput::click(button());
    QTRY_COMPARE(imports.size(), 1);
    const NelvoDevkit::BimModel first = m_services->editorData().models(Enterprise).models.constFirst();
    QCOMPARE(imports.constFirst(), (QVariantList{first.guid, first.name}));
    UserInput::click(button());
    QTRY_COMPARE(UserInput::findItem(&window, QStringLiteral("errorText"))->property("text").toString(),
                 QStringLiteral("BIM工程不能重复导入"));
    QCOMPARE(imports.size(), 1);
    UserInput::click(UserInput::findItem(&window, QStringLiteral("outlineButton")));
    QTRY_COMPARE(outlines.size(), 1);
    QCOMPARE(outlines.constFirst(), (QVariantList{first.guid, false}));
}

void TestSnippets::pushOutIsToldOnce()
{
    m_host->start();
    QVERIFY(signIn());
    QSignalSpy pushedOut(&*m_host, &Snippets::Host::pushedOut);
    m_services->editor().pushOut(User);
    beat();
    beat();
    bool isDone = false;
    m_host->orders().add([&isDone] { isDone = true; });
    QTRY_VERIFY(isDone);
    QCOMPARE(pushedOut.size(), 1);

    m_host->signInAgain();
    QVERIFY(signIn());
    QVERIFY(Snippets::listProjects(projects()));
    m_services->editor().pushOut(User);
    beat();
    QTRY_COMPARE(pushedOut.size(), 2);
}

void TestSnippets::secondSignInWorksOn()
{
    m_host->start();
    QVERIFY(signIn());
    m_host->signInAgain();
    QVERIFY(signIn());
    QVERIFY(Snippets::listProjects(projects()));
}

void TestSnippets::updateIsOfferedAndDownloaded()
{
    QObject* const updater = Snippets::findUpdater();
    QVERIFY(updater);
    QVERIFY(updater->metaObject()->indexOfMethod("upgrade()") >= 0); // what install calls
    Snippets::Update update(updater);
    QSignalSpy offered(&update, &Snippets::Update::offered);
    QSignalSpy progress(&update, &Snippets::Update::progress);
    QSignalSpy downloaded(&update, &Snippets::Update::downloaded);
    QSignalSpy told(&update, &Snippets::Update::told);

    update.check(m_services->updateUrl(), QStringLiteral("wrong"), QStringLiteral("nelvo-editor"));
    QCOMPARE(offered.size(), 0);
    update.check(m_services->updateUrl(), m_services->updates().token(), QStringLiteral("nelvo-editor"));
    QCOMPARE(offered.value(0).value(0).toString(), QStringLiteral("1.0.1"));
    QCOMPARE(told.size(), 1);
    update.download();
    QTRY_COMPARE_WITH_TIMEOUT(downloaded.size(), 1, WaitMilliseconds);
    QVERIFY(!progress.isEmpty());
}

void TestSnippets::checkOnTheFormPagePublishesAnEmptySession()
{
    QSignalSpy missing(&*m_host, &Snippets::Host::noService);
    m_host->start();
    QTRY_VERIFY(E2e::loginWindow() && E2e::loginWindow()->isVisible());
    Snippets::Update update(Snippets::findUpdater());
    update.check(m_services->updateUrl(), QStringLiteral("wrong"), QStringLiteral("nelvo-editor"));
    QCOMPARE(E2e::shownPage(), QStringLiteral("validComp"));
    QTRY_COMPARE_WITH_TIMEOUT(missing.size(), 1, WaitMilliseconds);
    QVERIFY(!E2e::loginWindow()->isVisible());
}

void TestSnippets::updatePageShowsAfterTheSignIn()
{
    m_host->start();
    QVERIFY(signIn());
    Snippets::Update update(Snippets::findUpdater());
    update.check(m_services->updateUrl(), QStringLiteral("wrong"), QStringLiteral("nelvo-editor"));
    QCOMPARE(E2e::shownPage(), QStringLiteral("validComp"));
    QVERIFY(!E2e::loginWindow()->isVisible());

    update.check(m_services->updateUrl(), m_services->updates().token(), QStringLiteral("nelvo-editor"));
    QCOMPARE(E2e::shownPage(), QStringLiteral("updateComp"));
    QVERIFY(!E2e::loginWindow()->isVisible());
    E2e::loginWindow()->show();
    QVERIFY(UserInput::activate(E2e::loginWindow()));
    QSignalSpy downloaded(&update, &Snippets::Update::downloaded);
    UserInput::click(UserInput::findItem(E2e::loginWindow(), QStringLiteral("upgradeButton")));
    QTRY_COMPARE(E2e::shownPage(), QStringLiteral("downloadComp"));
    // Nothing has begun but the page; the host begins the download.
    update.download();
    QTRY_COMPARE_WITH_TIMEOUT(downloaded.size(), 1, WaitMilliseconds);
    QTRY_VERIFY(UserInput::findItem(E2e::loginWindow(), QStringLiteral("installButton"))->isEnabled());
}

QTEST_MAIN(TestSnippets)
#include "test_snippets.moc"
