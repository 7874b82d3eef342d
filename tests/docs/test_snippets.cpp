#include "docs/snippets/devices.h"
#include "docs/snippets/host.h"
#include "docs/snippets/loading.h"
#include "docs/snippets/logging.h"
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
#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IPdsObserver.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QAbstractItemModel>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QMap>
#include <QPair>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickView>
#include <QSignalSpy>
#include <QTranslator>
#include <QUrl>
#include <QXmlStreamReader>
#include <QtTest>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

using TestSupport::json;

namespace {

const auto User = QStringLiteral("zhangwei");
const auto OtherUser = QStringLiteral("müller"); // belongs to another enterprise
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

//! A host's window with a scene for the dialog.
class SceneWindow : public QQuickView
{
public:
    SceneWindow()
    {
        setResizeMode(QQuickView::SizeRootObjectToView);
        resize(800, 600);
        QQmlComponent component(engine());
        component.setData("import QtQuick 2.15\nItem { Item { objectName: 'place'; anchors.fill: parent } }",
                          {});
        setContent({}, nullptr, component.create(rootContext()));
    }

    QQuickItem* place() const { return rootObject()->findChild<QQuickItem*>(QStringLiteral("place")); }
};

//! \brief Counts the calls of OnBimDialogClosed.
class Closings : public NelvoSDK::IPdsObserver
{
public:
    explicit Closings(NelvoSDK::IPdsMgr& manager) : m_manager(manager) { m_manager.Attach(this); }
    virtual ~Closings() { m_manager.Detach(this); }
    Q_DISABLE_COPY(Closings)

    int count() const { return m_count; }

private:
    void OnBimDialogOpened(QQuickItem* /*dialog*/) override {}
    void OnBimDialogClosed(QQuickItem* /*dialog*/) override { ++m_count; }
    void OnBimProjListCleared() override {}
    void OnBimProjListSynced() override {}
    void OnDownLoadBimProj(const QStringList& /*guids*/) override {}
    void OnConvertSimplyMode(const QString& /*guid*/, bool /*completionFirst*/) override {}

    NelvoSDK::IPdsMgr& m_manager;
    int m_count = 0;
};

//! The ids of all rows below `parent`, in the order of the dialog's tree.
QStringList departmentIds(const QAbstractItemModel& model, const QModelIndex& parent = {})
{
    QStringList ids;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        ids.append(model.data(index, Qt::UserRole + 1).toMap().value(QStringLiteral("id")).toString());
        ids += departmentIds(model, index);
    }
    return ids;
}

//! \brief A translator with the English texts of the examples. A host compiles them with lrelease instead.
class EnglishPages : public QTranslator
{
public:
    EnglishPages()
    {
        QFile file(QStringLiteral(NELVO_EXAMPLES_DIR "/translation/nelvo_en.ts"));
        file.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&file);
        QString context;
        QString source;
        while (!reader.atEnd()) {
            if (reader.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (reader.name() == QStringLiteral("name"))
                context = reader.readElementText();
            else if (reader.name() == QStringLiteral("source"))
                source = reader.readElementText();
            else if (reader.name() == QStringLiteral("translation"))
                m_texts.insert({context, source}, reader.readElementText());
        }
    }
    bool isEmpty() const override { return m_texts.isEmpty(); }
    QString translate(const char* context, const char* source, const char* /*disambiguation*/,
                      int /*n*/) const override
    {
        return m_texts.value({QString::fromUtf8(context), QString::fromUtf8(source)});
    }

private:
    QMap<QPair<QString, QString>, QString> m_texts;
};

} // namespace

//! Runs the code of the integration guide and checks the guide's statements about it.
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
    void openDialogEndsQuietly();
    void anotherEnterpriseReplacesTheDepartments();
    void closeButtonEndsTheApplicationUnannounced();
    void secretsStayOutOfTheLog();
    void translatorReachesThePages();
    void cookieOfTheSignInServiceStaysAtItsHost();
    void enterpriseIdMayBeAText();
    void pushOutIsToldOnce();
    void secondSignInWorksOn();
    void updateIsOfferedAndDownloaded();
    void checkOnTheFormPagePublishesAnEmptySession();
    void updatePageShowsAfterTheSignIn();

private:
    //! Waits for the login window and submits its form. Returns false if the window did not appear.
    bool sendForm(const QString& user) const;
    //! Calls sendForm() and waits until the host has installed the session.
    bool signIn(const QString& user = User);
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

bool TestSnippets::sendForm(const QString& user) const
{
    const auto isShown = [] { return E2e::loginWindow() && E2e::loginWindow()->isVisible(); };
    if (!QTest::qWaitFor(isShown, WaitMilliseconds) || !UserInput::activate(E2e::loginWindow()))
        return false;
    E2e::submitForm(E2e::loginWindow(), user, TestSupport::passwordOf(user), m_services->signInUrl());
    return true;
}

bool TestSnippets::signIn(const QString& user)
{
    const int before = m_installed->size();
    const auto isInstalled = [&] { return m_installed->size() == before + 1; };
    return sendForm(user) && QTest::qWaitFor(isInstalled, WaitMilliseconds);
}

//! Makes the session watch send a request now, without its timer.
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
        QCoreApplication::processEvents(); // like the plug-in while it waits
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
    QVERIFY(sendForm(User));
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
    Snippets::listProjects(projects()); // the result does not matter
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
    SceneWindow window;
    Snippets::Models models(*m_plugin->GetPdsMgr(), window.rootContext(), window.place());
    QSignalSpy imports(&models, &Snippets::Models::importWanted);
    QSignalSpy outlines(&models, &Snippets::Models::outlineWanted);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    models.readModels(0);
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

//! \brief Destroys an open dialog in the guide's order: the dialog, the plug-in's managers, the window.
void TestSnippets::openDialogEndsQuietly()
{
    m_host->start();
    QVERIFY(signIn());
    std::optional<SceneWindow> window(std::in_place);
    std::optional<Snippets::Models> models;
    models.emplace(*m_plugin->GetPdsMgr(), window->rootContext(), window->place());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(&*window));
    models->readModels(0);
    m_plugin->GetPdsMgr()->OpenBimDialog();
    const auto isListed = [&] { return UserInput::findItem(&*window, QStringLiteral("downloadButton")); };
    QTRY_VERIFY_WITH_TIMEOUT(isListed(), WaitMilliseconds);
    m_log->clear();

    models.reset();
    m_host.reset();
    window.reset();
    QCOMPARE(m_log->warnings(), QStringList());
}

void TestSnippets::anotherEnterpriseReplacesTheDepartments()
{
    m_host->start();
    QVERIFY(signIn());
    SceneWindow window;
    Snippets::Models models(*m_plugin->GetPdsMgr(), window.rootContext(), window.place());
    connect(&*m_host, &Snippets::Host::sessionInstalled, &models, &Snippets::Models::readModels);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    models.readModels(m_installed->constFirst().constFirst().toInt());
    m_plugin->GetPdsMgr()->OpenBimDialog();
    const auto button = [&window] { return UserInput::findItem(&window, QStringLiteral("downloadButton")); };
    QTRY_VERIFY_WITH_TIMEOUT(button(), WaitMilliseconds);
    const auto* const departments =
        window.rootContext()->contextProperty(QStringLiteral("orgModel")).value<QAbstractItemModel*>();
    const QStringList before = departmentIds(*departments);
    QVERIFY(before.contains(QString::fromStdWString(Department)));

    const Closings closings(*m_plugin->GetPdsMgr());
    m_host->signInAgain();
    QVERIFY(signIn(OtherUser));
    QTRY_VERIFY(!button()); // the dialog of the first enterprise has closed
    QCOMPARE(closings.count(), 0);
    const QStringList after = departmentIds(*departments);
    QCOMPARE(after.constFirst(), QStringLiteral("1002"));
    QVERIFY(after.size() > 1);
    for (const QString& id : after)
        QVERIFY2(!before.contains(id), qPrintable(id));
    m_plugin->GetPdsMgr()->OpenBimDialog();
    QTRY_VERIFY_WITH_TIMEOUT(button(), WaitMilliseconds);

    m_host->signInAgain(); // to the first enterprise: its departments are listed only once
    QVERIFY(signIn());
    QCOMPARE(departmentIds(*departments), before);
}

void TestSnippets::closeButtonEndsTheApplicationUnannounced()
{
    const auto logouts = [this] {
        const auto requests = m_services->log().requests();
        return std::count_if(requests.begin(), requests.end(),
                             [](const auto& request) { return request.path() == "/rs/casLogin/logout"; });
    };
    QVector<std::ptrdiff_t> logoutsWhenSaving;
    m_host.reset();
    // The guide recommends connecting before Initialize.
    const QObject saver;
    connect(qApp, &QCoreApplication::aboutToQuit, &saver, [&] { logoutsWhenSaving.append(logouts()); });
    m_host.emplace(*m_plugin, nullptr);
    m_installed.emplace(&*m_host, &Snippets::Host::sessionInstalled);
    QSignalSpy missing(&*m_host, &Snippets::Host::noService);
    m_host->start();
    QVERIFY(signIn());
    m_host->signInAgain();
    QVERIFY(UserInput::activate(E2e::loginWindow()));
    QTimer::singleShot(0, this, [] {
        UserInput::click(UserInput::findItem(E2e::loginWindow(), QStringLiteral("closeButton")));
    });
    QCOMPARE(QCoreApplication::exec(), 0);
    QCOMPARE(m_installed->size() + missing.size(), 1);
    QCOMPARE(logoutsWhenSaving, QVector<std::ptrdiff_t>{0});
    QCOMPARE(logouts(), 1);
}

void TestSnippets::secretsStayOutOfTheLog()
{
    const auto isSecret = [this] {
        const QStringList lines = m_log->debugs();
        return std::any_of(lines.begin(), lines.end(), [](const QString& line) {
            return line.contains(QStringLiteral("EDITORSESSION")) ||
                   line.contains(QStringLiteral("nelvo3dId"));
        });
    };
    const auto signInAndList = [this] {
        SceneWindow window;
        Snippets::Models models(*m_plugin->GetPdsMgr(), window.rootContext(), window.place());
        QSignalSpy listed(window.rootContext()->contextProperty(QStringLiteral("pdsMgr")).value<QObject*>(),
                          SIGNAL(bimProjListChanged()));
        models.readModels(0);
        return listed.wait(WaitMilliseconds);
    };
    m_host->start();
    QVERIFY(signIn());
    QVERIFY(signInAndList());
    QVERIFY(isSecret());

    m_log->clear();
    Snippets::keepSecretsOutOfTheLog();
    m_services->editor().pushOut(User); // so that the editor service sets new cookies
    m_host->signInAgain();
    const bool isSignedIn = signIn() && signInAndList();
    qDebug("another line");
    qInstallMessageHandler(nullptr);
    QVERIFY(isSignedIn);
    QVERIFY(!isSecret());
    QVERIFY(m_log->debugs().contains(QStringLiteral("another line")));
}

void TestSnippets::translatorReachesThePages()
{
    EnglishPages english;
    QVERIFY(!english.isEmpty());
    QCoreApplication::installTranslator(&english);
    m_host->start();
    QTRY_VERIFY(E2e::loginWindow() && E2e::loginWindow()->isVisible());
    QCOMPARE(
        UserInput::findItem(E2e::loginWindow(), QStringLiteral("loginButton"))->property("text").toString(),
        QStringLiteral("Sign in"));
    QVERIFY(signIn());
    SceneWindow window;
    Snippets::Models models(*m_plugin->GetPdsMgr(), window.rootContext(), window.place());
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    models.readModels(0);
    m_plugin->GetPdsMgr()->OpenBimDialog();
    const auto title = [&window] { return UserInput::findItem(&window, QStringLiteral("dialogTitle")); };
    QTRY_VERIFY(title());
    QCOMPARE(title()->property("title").toString(), QStringLiteral("BIM models"));
}

void TestSnippets::cookieOfTheSignInServiceStaysAtItsHost()
{
    const QString elsewhere = QStringLiteral("http://localhost:%1").arg(QUrl(m_services->editorUrl()).port());
    m_services->setReply("GET", QStringLiteral("/rs/casLogin/serverUrl"),
                         json(QStringLiteral(R"([{"serverName": "varlo-editor", "serverURL": "%1"}])")
                                  .arg(elsewhere)
                                  .toUtf8()));
    m_host->start();
    QVERIFY(signIn());
    int heartbeats = 0;
    const auto requests = m_services->log().requests();
    for (const auto& request : requests) {
        if (request.path() == "/rs/casLogin/serverUrl")
            QVERIFY(request.header("Cookie").contains("JSESSIONID"));
        if (request.path() == "/org/heartbeat" && heartbeats++ == 0)
            QCOMPARE(request.header("Cookie"), QByteArray());
    }
    QVERIFY(heartbeats > 0);
}

void TestSnippets::enterpriseIdMayBeAText()
{
    m_services->setReply("GET", QStringLiteral("/rs/casLogin/listCompany"),
                         json(R"([{"enterpriseId": "1001", "enterpriseName": "x"}])"));
    m_host->start();
    QVERIFY(signIn());
    QCOMPARE(qApp->property("epId").toString(), QString::number(Enterprise));
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
    QVERIFY(updater->metaObject()->indexOfMethod("upgrade()") >= 0); // called by install
    Snippets::Update update(updater);
    QSignalSpy offered(&update, &Snippets::Update::offered);
    QSignalSpy progress(&update, &Snippets::Update::progress);
    QSignalSpy downloaded(&update, &Snippets::Update::downloaded);
    QSignalSpy messages(&update, &Snippets::Update::message);

    update.check(m_services->updateUrl(), QStringLiteral("wrong"), QStringLiteral("nelvo-editor"));
    QCOMPARE(offered.size(), 0);
    update.check(m_services->updateUrl(), m_services->updates().token(), QStringLiteral("nelvo-editor"));
    QCOMPARE(offered.value(0).value(0).toString(), QStringLiteral("1.0.1"));
    QCOMPARE(messages.size(), 1);
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
    // The button only changes the page. The host starts the download.
    update.download();
    QTRY_COMPARE_WITH_TIMEOUT(downloaded.size(), 1, WaitMilliseconds);
    QTRY_VERIFY(UserInput::findItem(E2e::loginWindow(), QStringLiteral("installButton"))->isEnabled());
}

QTEST_MAIN(TestSnippets)
#include "test_snippets.moc"
