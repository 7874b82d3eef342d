#include "tests/bim/pdsstandins.h"
#include "tests/e2e/bimscene.h"
#include "tests/e2e/pluginhost.h"
#include "tests/e2e/wire.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/support/wine.h"
#include "userinput/userinput.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <thread>

using NelvoDevkit::BimModel;
using NelvoDevkit::Fault;
using TestSupport::json;
using TestSupport::MessageLog;

namespace {

constexpr qint64 Enterprise = 1001;
const auto User = QStringLiteral("zhangwei");
const auto BimPath = QStringLiteral("/bim/relation/");
const auto DwgPath = QStringLiteral("/bim/relation/dwg");
const auto BimTitle = QStringLiteral("关联BIM模型");
const auto DwgTitle = QStringLiteral("关联DWG模型");
const auto AllProjects = QStringLiteral("所有工程");
const auto Refusal = QStringLiteral("BIM工程不能重复导入");
const auto BimFailed = QStringLiteral("CProjectInfoMgr::getBimProjList getprojList /scene/project falied!");
const auto DwgFailed =
    QStringLiteral("CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!");
//! The output of the process without a shutdown when it has received its list.
const QByteArray SeenAll = "seen all";
const auto ExitMode = QStringLiteral("--exit-without-shutdown");

NelvoSDK::IPdsMgr* manager()
{
    return E2e::plugin()->GetPdsMgr();
}

QStringList words(const char* text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

QStringList namesOf(const QVector<BimModel>& models)
{
    QStringList names;
    for (const BimModel& model : models)
        names.append(model.name);
    return names;
}

QVector<BimModel> ofDepartments(QVector<BimModel> models, const QStringList& departments)
{
    const auto isElsewhere = [&departments](const BimModel& model) {
        return !departments.contains(model.deptId);
    };
    models.erase(std::remove_if(models.begin(), models.end(), isElsewhere), models.end());
    return models;
}

//! A row of the list: the number of the program is that of the picture, except for programs without one.
QString rowOf(const BimModel& model)
{
    static const QList<qint64> pictured{1, 2, 3, 4, 5, 7, 9, 10, 11, 12};
    const QString picture =
        pictured.contains(model.profession) ? QString::number(model.profession) : QStringLiteral("other");
    return QStringLiteral("%1 profession_%2.png").arg(model.name, picture);
}

} // namespace

Q_DECLARE_METATYPE(NelvoDevkit::Fault)

//! The BIM dialog of the loaded library in the scene of a host, used with mouse and keyboard by a signed-in
//! account.
class TestE2eBim : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void modelsShowWithNamesAndPictures();
    void drawingsShowWithoutPictures();
    void rowsHaveAllFieldsOfTheManagersList();
    void bothListsShareTheDialog();
    void departmentNarrowsToItselfAndBelow();
    void typedTextNarrows();
    void downloadReachesTheHost();
    void secondImportIsRefused();
    void outlineGoesByTheChosenWay();
    void otherProjectsDownloadOnly();
    void reopeningStartsAfresh();
    void closedDialogLeavesTheScene();
    void requestsToTheByte();

    void failingServiceGivesAnEmptyList_data();
    void failingServiceGivesAnEmptyList();
    void lostSessionGivesAnEmptyList_data();
    void lostSessionGivesAnEmptyList();
    void stalledListAndQuickSwitch();
    void namesAnswerAfterwards();

    void shutdownWaitsForAStalledFetch();
    void shutdownWithAnOpenDialog();
    void listsWorkAfterAnotherStart();
    void exitWithoutShutdown_data();
    void exitWithoutShutdown();

private:
    void enter();
    void createScene();
    void open(void (NelvoSDK::IPdsMgr::*opening)(), int rows);
    void openBim() { open(&NelvoSDK::IPdsMgr::OpenBimDialog, m_models.size()); }
    void openDwg() { open(&NelvoSDK::IPdsMgr::OpenDWGBimDialog, m_drawings.size()); }
    QStringList targets() const;
    QString guidOf(const QString& name) const;
    //! The warnings since the last call, without a warning of Qt that occurs on a loaded machine.
    QStringList newWarnings();
    void leaveHost();

    std::unique_ptr<MessageLog> m_log;
    std::unique_ptr<TestSupport::StartedServices> m_services;
    std::unique_ptr<E2e::PluginHost> m_host;
    E2e::ImportControl m_control;
    std::unique_ptr<E2e::BimScene> m_scene;
    PdsObserver m_observer;
    QVector<BimModel> m_models;
    QVector<BimModel> m_drawings;
};

void TestE2eBim::initTestCase()
{
    TestSupport::StartedServices services;
    m_models = services.editorData().models(Enterprise).models;
    m_drawings = services.editorData().models(Enterprise).drawings;
    QVERIFY(m_models.size() > 10 && m_drawings.size() > 2);
}

void TestE2eBim::init()
{
    m_log = std::make_unique<MessageLog>();
    m_services = std::make_unique<TestSupport::StartedServices>();
    m_host = std::make_unique<E2e::PluginHost>(m_services->signInUrl());
    enter();
}

//! As a host does: sign-in, project information, scene, and the first list before a dialog is open.
void TestE2eBim::enter()
{
    m_control.isMainProject = true;
    m_control.isImportAllowed = true;
    m_control.questions.clear();
    m_observer.calls.clear();
    NelvoSDK::IProjectInfoMgr* const projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    const NelvoSDK::LoginSession session = m_host->signIn(m_services->signInUrl(), User);
    m_log->clear(); // a sign-in logs its requests as warnings
    projects->ReflushProjOrgInfo(session);
    manager()->Attach(&m_observer);
    createScene();
    manager()->InitBimData();
    QTRY_COMPARE(m_observer.calls, words("synced"));
    m_observer.calls.clear();
}

void TestE2eBim::createScene()
{
    m_scene = std::make_unique<E2e::BimScene>(m_control);
    QVERIFY(m_scene->dialog());
    QVERIFY(m_scene->show());
    QVERIFY(!m_scene->isDialogShown());
}

//! A test fails if it leaves warnings; a test that expects warnings removes them.
void TestE2eBim::cleanup()
{
    m_services->clearFaults();
    m_scene.reset();
    leaveHost();
    m_services.reset();
    const QStringList warnings = newWarnings();
    m_log.reset();
    QVERIFY2(warnings.isEmpty(), qPrintable(warnings.join(QLatin1Char('\n'))));
}

void TestE2eBim::leaveHost()
{
    if (m_host)
        manager()->Detach(&m_observer);
    m_host.reset();
}

//! Waits until the list has arrived.
void TestE2eBim::open(void (NelvoSDK::IPdsMgr::*opening)(), int rows)
{
    const int synced = m_observer.calls.count(QStringLiteral("synced"));
    (manager()->*opening)();
    QTRY_VERIFY(m_scene->isDialogShown());
    QTRY_COMPARE(m_observer.calls.count(QStringLiteral("synced")), synced + 1);
    QTRY_COMPARE(m_scene->rowCount(), rows);
    QTRY_VERIFY(rows == 0 || !m_scene->names().isEmpty());
}

QStringList TestE2eBim::targets() const
{
    QStringList found;
    const QVector<NelvoDevkit::LoggedRequest> requests = m_services->log().requests();
    for (const NelvoDevkit::LoggedRequest& request : requests) {
        if (request.target.startsWith("/bim/"))
            found.append(QString::fromLatin1(request.target));
    }
    return found;
}

QString TestE2eBim::guidOf(const QString& name) const
{
    for (const QVector<BimModel>& list : {m_models, m_drawings}) {
        for (const BimModel& model : list) {
            if (model.name == name)
                return model.guid;
        }
    }
    return {};
}

QStringList TestE2eBim::newWarnings()
{
    QStringList lines = m_log->warnings();
    m_log->clear();
    lines.removeAll(QStringLiteral("QUnifiedTimer::stopAnimationDriver: driver is not running"));
    return lines;
}

void TestE2eBim::modelsShowWithNamesAndPictures()
{
    openBim();
    QCOMPARE(m_scene->title(), BimTitle);
    QCOMPARE(m_scene->department(), AllProjects);
    QVERIFY(m_scene->names().size() < m_models.size());
    QStringList rows;
    for (const BimModel& model : qAsConst(m_models))
        rows.append(rowOf(model));
    QCOMPARE(m_scene->scrollThroughRows(), rows);
    QCOMPARE(m_observer.calls, words("opened cleared synced"));
}

void TestE2eBim::drawingsShowWithoutPictures()
{
    openDwg();
    QCOMPARE(m_scene->title(), DwgTitle);
    QCOMPARE(m_scene->scrollThroughRows(), namesOf(m_drawings));
    QVERIFY(!UserInput::findItem(m_scene->window(), QStringLiteral("radioRow")));
    QVERIFY(!UserInput::findItem(m_scene->window(), QStringLiteral("outlineButton")));
    m_scene->clickInRow(m_drawings.at(1).name, QStringLiteral("downloadButton"));
    QCOMPARE(m_observer.calls.last(), QStringLiteral("download 1: ") + m_drawings.at(1).guid);
}

//! The page receives the models by column and creates its rows from them.
void TestE2eBim::rowsHaveAllFieldsOfTheManagersList()
{
    const auto shown = [this] {
        const QQuickItem* list = UserInput::findItem(m_scene->window(), QStringLiteral("searchList"));
        return QJsonArray::fromVariantList(list->property("dataModel").toList());
    };
    const auto expected = [] {
        return dynamic_cast<QObject&>(*manager()).property("bimProjList").toJsonArray();
    };
    openBim();
    QCOMPARE(expected().size(), m_models.size());
    QVERIFY(expected().first().toObject().contains(QStringLiteral("size")));
    QCOMPARE(shown(), expected());
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("方案组")));
    QVERIFY(expected().size() < m_models.size());
    QCOMPARE(shown(), expected());
    openDwg();
    QCOMPARE(expected().size(), m_drawings.size());
    QVERIFY(!expected().first().toObject().contains(QStringLiteral("size")));
    QCOMPARE(shown(), expected());
}

//! Opened one after the other, without closing.
void TestE2eBim::bothListsShareTheDialog()
{
    openBim();
    openDwg();
    QCOMPARE(m_scene->title(), DwgTitle);
    QCOMPARE(m_scene->names(), namesOf(m_drawings));
    openBim();
    QCOMPARE(m_scene->title(), BimTitle);
    QCOMPARE(m_scene->names().first(), m_models.first().name);
    QCOMPARE(m_observer.calls, words("opened cleared synced cleared synced cleared synced"));
    QCOMPARE(targets(), (QStringList{BimPath, BimPath, DwgPath, BimPath}));
}

void TestE2eBim::departmentNarrowsToItselfAndBelow()
{
    openBim();
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("建筑设计一所")));
    QCOMPARE(m_scene->department(), QStringLiteral("建筑设计一所"));
    const QStringList narrowed = namesOf(ofDepartments(m_models, words("1001-11 1001-111 1001-112")));
    QCOMPARE(narrowed.size(), 4);
    QTRY_COMPARE(m_scene->names(), narrowed);
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("方案组")));
    QTRY_COMPARE(m_scene->names(), namesOf(ofDepartments(m_models, words("1001-111"))));
    // The root of the tree contains all departments.
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("远景建筑设计研究院")));
    QTRY_COMPARE(m_scene->rowCount(), m_models.size());
    // None of these sends a request.
    QCOMPARE(targets(), (QStringList{BimPath, BimPath}));
}

void TestE2eBim::typedTextNarrows()
{
    openBim();
    UserInput::fillField(m_scene->window(), QStringLiteral("searchBox"), QStringLiteral("bim 研发"));
    QTRY_COMPARE(m_scene->names(), QStringList{QStringLiteral("BIM 研发部 试验模型")});
    UserInput::fillField(m_scene->window(), QStringLiteral("searchBox"), QStringLiteral("高铁"));
    QTRY_COMPARE(m_scene->rowCount(), 3);
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("结构设计所")));
    QTRY_COMPARE(m_scene->names(), QStringList{QStringLiteral("高铁新城综合枢纽 钢结构")});
    m_scene->clickPart(QStringLiteral("clearButton"));
    QTRY_COMPARE(m_scene->names(), namesOf(ofDepartments(m_models, words("1001-12"))));
    QCOMPARE(m_scene->searched(), QString());
}

void TestE2eBim::downloadReachesTheHost()
{
    openBim();
    m_observer.calls.clear();
    const BimModel& model = m_models.at(2);
    m_scene->clickInRow(model.name, QStringLiteral("downloadButton"));
    QCOMPARE(m_control.questions, QStringList{model.guid + QStringLiteral(" 1")});
    QCOMPARE(m_observer.calls, QStringList{QStringLiteral("download 1: ") + model.guid});
    QVERIFY(m_scene->isDialogShown());
    QCOMPARE(m_scene->message(), QString());
}

void TestE2eBim::secondImportIsRefused()
{
    openBim();
    m_observer.calls.clear();
    const QString name = m_models.first().name;
    m_control.isImportAllowed = false;
    m_scene->clickInRow(name, QStringLiteral("downloadButton"));
    QCOMPARE(m_scene->message(), Refusal);
    QCOMPARE(m_observer.calls, QStringList());
    m_scene->clickInRow(name, QStringLiteral("outlineButton"));
    QCOMPARE(m_scene->message(), Refusal);
    m_control.isImportAllowed = true;
    m_scene->clickInRow(name, QStringLiteral("downloadButton"));
    QCOMPARE(m_scene->message(), QString());
    QCOMPARE(m_observer.calls.last(), QStringLiteral("download 1: ") + m_models.first().guid);
}

void TestE2eBim::outlineGoesByTheChosenWay()
{
    openBim();
    m_observer.calls.clear();
    const QString name = m_models.at(1).name;
    const QString convert = QStringLiteral("convert ") + m_models.at(1).guid;
    m_scene->clickInRow(name, QStringLiteral("outlineButton"));
    m_scene->clickPart(QStringLiteral("completionCheck"));
    m_scene->clickInRow(name, QStringLiteral("outlineButton"));
    m_scene->clickPart(QStringLiteral("speedProprityCheck"));
    m_scene->clickInRow(name, QStringLiteral("outlineButton"));
    QCOMPARE(m_observer.calls, (QStringList{convert + QStringLiteral(" 0"), convert + QStringLiteral(" 1"),
                                            convert + QStringLiteral(" 0")}));
    QCOMPARE(m_control.questions, QStringList());
}

void TestE2eBim::otherProjectsDownloadOnly()
{
    openBim();
    m_control.setProperty("isMainProject", false);
    QVERIFY(!UserInput::findItem(m_scene->window(), QStringLiteral("outlineButton")));
    QVERIFY(!UserInput::findItem(m_scene->window(), QStringLiteral("radioRow")));
    m_scene->clickInRow(m_models.first().name, QStringLiteral("downloadButton"));
    QCOMPARE(m_control.questions, QStringList{m_models.first().guid + QStringLiteral(" 0")});
}

void TestE2eBim::reopeningStartsAfresh()
{
    openBim();
    m_control.isImportAllowed = false;
    m_scene->clickInRow(m_models.first().name, QStringLiteral("downloadButton"));
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("结构设计所")));
    UserInput::fillField(m_scene->window(), QStringLiteral("searchBox"), QStringLiteral("高铁"));
    QTRY_COMPARE(m_scene->rowCount(), 1);
    m_scene->clickPart(QStringLiteral("closeButton"));
    QTRY_VERIFY(!m_scene->isDialogShown());

    // The reply to the next opening waits; meanwhile the earlier rows are visible.
    m_services->addFault({Fault::Stall, BimPath, "GET", 0, false});
    manager()->OpenBimDialog();
    QTRY_VERIFY(m_scene->isDialogShown());
    QCOMPARE(m_scene->searched(), QString());
    QCOMPARE(m_scene->message(), QString());
    QCOMPARE(m_scene->department(), AllProjects);
    QTRY_COMPARE(m_scene->names(), namesOf(ofDepartments(m_models, words("1001-12"))));
    m_services->clearFaults();
    QTRY_COMPARE(m_scene->rowCount(), m_models.size());
}

void TestE2eBim::closedDialogLeavesTheScene()
{
    openBim();
    QCOMPARE(m_scene->dialog()->parentItem(), m_scene->window()->rootObject());
    m_scene->clickPart(QStringLiteral("closeButton"));
    QTRY_VERIFY(!m_scene->isDialogShown());
    QCOMPARE(m_observer.calls, words("opened cleared synced closed"));
    QVERIFY(!m_scene->dialog()->parentItem());
    QCOMPARE(m_observer.dialogs.mid(m_observer.dialogs.size() - 2),
             (QList<QQuickItem*>{m_scene->dialog(), m_scene->dialog()}));
    openDwg();
    QTest::keyClick(m_scene->window(), Qt::Key_Escape);
    QTRY_VERIFY(!m_scene->isDialogShown());
    QCOMPARE(m_observer.calls.mid(4), words("opened cleared synced closed"));
}

void TestE2eBim::requestsToTheByte()
{
    m_services->log().clear();
    openBim();
    openDwg();
    // The cookies of the session, without those of the sign-in service.
    const QByteArray cookies = "Cookie: EDITORSESSION=*; route=*\n";
    const QByteArrayList wire{E2e::request("GET /bim/relation/", "EDITOR", cookies),
                              E2e::request("GET /bim/relation/dwg", "EDITOR", cookies)};
    QCOMPARE(E2e::receivedBy(*m_services), wire);
}

void TestE2eBim::failingServiceGivesAnEmptyList_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("status");
    QTest::addColumn<QStringList>("reasons"); // possible beginnings of the warning
    QTest::newRow("status 500") << Fault::Status << 500 << QStringList{"Error transferring"};
    QTest::newRow("refuse") << Fault::Refuse << 0 << QStringList{"Connection refused"};
    QTest::newRow("reset") << Fault::Reset << 0 << QStringList{"Connection closed"};
    // A body that ends too early may be an error for Qt or not: this is a race in its network thread.
    QTest::newRow("cut body") << Fault::CutBody << 0 << QStringList{"Connection closed", "parse json failed"};
    QTest::newRow("no JSON") << Fault::NotJson << 0 << QStringList{"parse json failed"};
    QTest::newRow("endless redirect") << Fault::EndlessRedirect << 0 << QStringList{"Too many redirects"};
}

void TestE2eBim::failingServiceGivesAnEmptyList()
{
    QFETCH(Fault, fault);
    QFETCH(int, status);
    QFETCH(QStringList, reasons);
    if (fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);

    openBim();
    for (const QString& path : {BimPath, DwgPath})
        m_services->addFault({fault, path, "GET", status, false});
    m_log->clear();
    open(&NelvoSDK::IPdsMgr::OpenDWGBimDialog, 0);
    QCOMPARE(m_log->debugs(), QStringList{DwgFailed});
    QStringList warnings = newWarnings();
    QCOMPARE(warnings.size(), 1);
    const auto begins = [&warnings](const QString& reason) { return warnings.first().startsWith(reason); };
    QVERIFY2(std::any_of(reasons.begin(), reasons.end(), begins), qPrintable(warnings.first()));
    QCOMPARE(m_scene->title(), DwgTitle);
    QCOMPARE(m_scene->message(), QString());

    open(&NelvoSDK::IPdsMgr::OpenBimDialog, 0);
    QCOMPARE(m_log->debugs(), QStringList{BimFailed});
    warnings = newWarnings();
    QCOMPARE(warnings.size(), 1);
    QCOMPARE(m_scene->title(), BimTitle);

    m_services->clearFaults();
    openDwg();
    QCOMPARE(m_scene->names(), namesOf(m_drawings));
}

void TestE2eBim::lostSessionGivesAnEmptyList_data()
{
    QTest::addColumn<bool>("isPushedOut");
    QTest::newRow("lost") << false;
    QTest::newRow("pushed out") << true;
}

void TestE2eBim::lostSessionGivesAnEmptyList()
{
    QFETCH(bool, isPushedOut);
    if (isPushedOut)
        m_services->editor().pushOut(User);
    else
        m_services->forgetSessions();
    m_log->clear();
    open(&NelvoSDK::IPdsMgr::OpenBimDialog, 0);
    QCOMPARE(m_log->debugs(), QStringList{BimFailed});
    QCOMPARE(newWarnings(), QStringList{QStringLiteral("Host requires authentication")});
}

//! Each reply is shown in its order; the last one remains.
void TestE2eBim::stalledListAndQuickSwitch()
{
    openBim();
    m_scene->clickPart(QStringLiteral("closeButton"));
    QTRY_VERIFY(!m_scene->isDialogShown());
    m_observer.calls.clear();
    m_services->log().clear();
    m_services->addFault({Fault::Stall, BimPath, "GET", 0, false});
    manager()->OpenBimDialog();
    QTRY_COMPARE(targets(), QStringList{BimPath});
    manager()->OpenDWGBimDialog();
    manager()->OpenBimDialog();
    manager()->OpenDWGBimDialog();
    QTRY_VERIFY(m_scene->isDialogShown());
    // The earlier rows and title, in a scene that still works.
    QCOMPARE(m_scene->title(), BimTitle);
    QTRY_COMPARE(m_scene->rowCount(), m_models.size());
    m_scene->clickInRow(m_models.first().name, QStringLiteral("downloadButton"));
    QCOMPARE(m_observer.calls.last(), QStringLiteral("download 1: ") + m_models.first().guid);
    m_observer.calls.clear();
    QCOMPARE(targets(), QStringList{BimPath});

    m_services->clearFaults();
    QTRY_COMPARE(m_observer.calls, words("synced synced synced synced"));
    QTRY_COMPARE(m_scene->names(), namesOf(m_drawings));
    QCOMPARE(m_scene->title(), DwgTitle);
    QCOMPARE(targets(), (QStringList{BimPath, DwgPath, BimPath, DwgPath}));
}

void TestE2eBim::namesAnswerAfterwards()
{
    const auto nameOf = [](const QString& guid) {
        return QString::fromStdWString(manager()->GetBimProjName(guid.toStdWString()));
    };
    const BimModel& model = m_models.last();
    const BimModel& drawing = m_drawings.last();
    QCOMPARE(nameOf(model.guid), model.name);
    QCOMPARE(nameOf(drawing.guid), QString());
    openDwg();
    QCOMPARE(nameOf(drawing.guid), drawing.name);
    QCOMPARE(nameOf(model.guid), model.name);
    QCOMPARE(nameOf(model.guid.toUpper()), QString());
    QCOMPARE(nameOf(QString()), QString());
}

void TestE2eBim::shutdownWaitsForAStalledFetch()
{
    m_services->addFault({Fault::Stall, BimPath, "GET", 0, false});
    m_services->log().clear();
    manager()->OpenBimDialog();
    QTRY_COMPARE(targets(), QStringList{BimPath});
    m_observer.calls.clear();

    std::atomic<bool> answered{false};
    std::thread service([this, &answered] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        answered = true;
        m_services->clearFaults();
    });
    // Remains attached, to detect any later call.
    m_host.reset();
    const bool waited = answered;
    service.join();
    QVERIFY(waited);
    QCoreApplication::processEvents();
    QCOMPARE(m_observer.calls, QStringList());
    QVERIFY(!manager());
}

//! The scene outlives the objects that its dialog used.
void TestE2eBim::shutdownWithAnOpenDialog()
{
    openBim();
    leaveHost();
    QCoreApplication::processEvents();
    m_observer.calls.clear();
    if (m_scene->isDialogShown()) {
        m_scene->clickPart(QStringLiteral("closeButton"));
        QTRY_VERIFY(!m_scene->isDialogShown());
    }
    QCOMPARE(m_observer.calls, QStringList());
}

void TestE2eBim::listsWorkAfterAnotherStart()
{
    openBim();
    m_scene.reset();
    leaveHost();
    // A session contains the cookies that its sign-in received, and a service that still knows the client
    // would set none.
    m_services->forgetSessions();
    m_host = std::make_unique<E2e::PluginHost>(m_services->signInUrl());
    enter();
    openDwg();
    QCOMPARE(m_scene->names(), namesOf(m_drawings));
    openBim();
    QVERIFY(m_scene->chooseDepartment(QStringLiteral("结构设计所")));
    QTRY_COMPARE(m_scene->names(), namesOf(ofDepartments(m_models, words("1001-12"))));
}

void TestE2eBim::exitWithoutShutdown_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("list read") << QStringLiteral("list");
    QTest::newRow("dialog open") << QStringLiteral("dialog");
    QTest::newRow("login window open") << QStringLiteral("login");
}

//! In a separate process, which prints what it has received.
void TestE2eBim::exitWithoutShutdown()
{
    QFETCH(const QString, state);
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QCoreApplication::applicationFilePath(), {ExitMode, state});
    QVERIFY(process.waitForFinished(120000));
    const QByteArray output = process.readAll();
    const bool isClean = process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    QVERIFY2(output.contains(SeenAll), output.constData());
    QVERIFY2(isClean, output.constData());
}

namespace {

//! A host that does not call Shutdown: its managers, thread, list and window exist when the application ends.
int exitWithoutShutdown(const QString& state)
{
    static TestSupport::StartedServices services;
    static PdsObserver observer;
    static E2e::ImportControl control;
    QCoreApplication::instance()->setProperty("sdkAddr", services.editorUrl());
    services.setReply("GET", BimPath, json(R"({"data":[{"ppName":"a"}]})"));
    E2e::plugin()->Initialize();
    manager()->Attach(&observer);
    E2e::BimScene scene(control);
    bool isSeen = false;
    if (state == QStringLiteral("login")) {
        E2e::plugin()->GetLoginMgr()->Start();
        QWindow* const window = QGuiApplication::topLevelWindows().value(0);
        isSeen = window != nullptr && QTest::qWaitForWindowExposed(window, 60000);
    } else if (state == QStringLiteral("dialog")) {
        manager()->OpenBimDialog();
        isSeen = scene.show() && QTest::qWaitFor([&scene] { return scene.rowCount() == 1; }, 60000);
    } else {
        manager()->InitBimData();
        isSeen = QTest::qWaitFor([] { return observer.calls.size() == 1; }, 60000);
    }
    std::fputs(isSeen ? SeenAll.constData() : "", stderr);
    return isSeen ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    int onlyTheProgram = 1; // see E2E_MAIN
    const QGuiApplication application(onlyTheProgram, argv);
    if (argc == 3 && ExitMode == QLatin1String(argv[1]))
        return exitWithoutShutdown(QString::fromLatin1(argv[2]));
    TestE2eBim test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_e2e_bim.moc"
