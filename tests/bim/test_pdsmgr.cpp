#include "bim/pdsmgr.h"

#include "tests/bim/modelservice.h"
#include "tests/bim/orgnode.h"
#include "tests/bim/pdsstandins.h"
#include "tests/support/messagelog.h"
#include "tests/support/pluginshell.h"
#include "tests/support/wine.h"

#include <QDeadlineTimer>
#include <QJsonObject>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QThread>
#include <QWebChannel>
#include <QtTest>
#include <VLSmartDB/DevkitDatabase.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

using NelvoDevkit::Fault;
using NelvoPlugin::CPdsMgr;
using TestSupport::MessageLog;
using TestSupport::PluginShell;

namespace {

const auto ProjectGuid = QStringLiteral("11111111-2222-3333-4444-555555555555");

QStringList words(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

//! The value of `key` in each record of the array.
QStringList column(const QJsonArray& records, const char* key)
{
    QStringList values;
    for (const QJsonValue& record : records)
        values.append(record.toObject().value(QLatin1String(key)).toString());
    return values;
}

//! A manager and its observer, which also records the manager's signals.
struct Pds {
    Pds()
    {
        plugin.projectInfoMgr = &projects;
        manager.Attach(&observer);
        manager.SetPlugin(&plugin);
        const auto note = [this](const char* name) {
            return [this, name] { observer.calls.append(QString::fromLatin1(name)); };
        };
        QObject::connect(&manager, &CPdsMgr::bimProjListChanged, note("bimProjListChanged"));
        QObject::connect(&manager, &CPdsMgr::pdsProjListChanged, note("pdsProjListChanged"));
        QObject::connect(&manager, &CPdsMgr::bCheckedPdsChanged, note("bCheckedPdsChanged"));
        QObject::connect(&manager, &CPdsMgr::bViewDWGBimListChanged, note("bViewDWGBimListChanged"));
        QObject::connect(&manager, &CPdsMgr::checkListChanged, note("checkListChanged"));
    }

    //! The calls and signals since the previous call of this function.
    QStringList calls() { return std::exchange(observer.calls, {}); }
    QStringList shown(const char* key = "name") const { return column(manager.getBimProjList(), key); }

    ProjectInfo projects;
    PluginShell plugin;
    PdsObserver observer;
    CPdsMgr manager;
};

} // namespace

Q_DECLARE_METATYPE(NelvoDevkit::Fault)

class TestPdsMgr : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void castsByName();
    void methodsInTheirOrder();
    void propertiesInTheirOrder();
    void downloadStages();
    void newManagerHoldsNothing();
    void mapOfNamesIsAMetaType();
    void destroyedWithoutEverHavingFetched();
    void destroyedRightAfterARequest();
    void destructionWaitsForTheFetch();

    void listArrives_data();
    void listArrives();
    void emptyingIsToldBeforeTheRequest_data();
    void emptyingIsToldBeforeTheRequest();
    void nothingIsToldUntilTheListArrives();
    void observersAreToldBeforeTheListIsThere();
    void listIsThereBeforeItsKindIsTold();
    void everythingIsToldOnTheGuiThread();
    void failedFetchIsAnEmptyList_data();
    void failedFetchIsAnEmptyList();
    void failedFetchEmptiesWhatWasShown();
    void failedFetchKeepsTheNames();
    void namesAreKnownWhenTheListIsTold();
    void namesOfBothListsAnswer();
    void listsThatArriveTogetherAreNamedInOrder();
    void laterRowNamesTheGuid();
    void namesCompareExactly();
    void quickSwitchesAreAnsweredInOrder();
    void arrivingListDropsTheFilter();

    void downloadPassesOneGuid();
    void conversionPassesItsArguments();
    void nobodyNeedsToListen();
    void detachedObserverHearsNothing();

    void pdsProjectsBelowAModel();
    void modelThatIsNotThereChangesNothing();
    void modelWithoutChildrenEmptiesTheList();
    void textThatIsNoGuidIsLookedUp();

    void checkingTwiceGivesTwoEntries();
    void uncheckingAStrangerStillTells();
    void emptyEntryCountsAsChecked();
    void checkedEntriesSurviveAList();
    void checkingIsTheDefault();

    void departmentAndAllBelowIt();
    void emptyDepartmentShowsAll();
    void emptyDepartmentOnAnEmptyTree();
    void unknownDepartmentEmptiesQuietly();
    void departmentThatCannotBeChosenFilters();
    void departmentsCompareExactly();
    void projectWithoutDepartment();

    void initialDataFillsTheTreeAndAsksForTheList();
    void initialDataGoesInItsOrder();
    void initialDataAgainAppendsTheTree();
    void bimObjectStandsOnTheChannel();
    void initialDataWithoutAChannel();

private:
    void receiveTree(Pds& pds, const NelvoSDK::OrgTreeNode& tree);
    void receiveBimList(Pds& pds, const QByteArray& rows);

    ModelService m_services;
};

void TestPdsMgr::init()
{
    m_services.reset();
}

void TestPdsMgr::cleanup()
{
    VLSmartDB::clearDatabase();
}

//! Calls InitBimData with this tree, and waits for the list that InitBimData requests.
void TestPdsMgr::receiveTree(Pds& pds, const NelvoSDK::OrgTreeNode& tree)
{
    pds.projects.tree = tree;
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.InitBimData();
    QTRY_COMPARE(arrived.size(), 1);
}

//! Requests the BIM list, waits until it arrives, and drops the recorded calls.
void TestPdsMgr::receiveBimList(Pds& pds, const QByteArray& rows)
{
    m_services.setList(BimPath, rows);
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.getBimProj();
    QTRY_COMPARE(arrived.size(), 1);
    pds.calls();
}

void TestPdsMgr::castsByName()
{
    CPdsMgr manager;
    QCOMPARE(manager.qt_metacast("NelvoPlugin::CPdsMgr"), static_cast<void*>(&manager));
    QCOMPARE(manager.qt_metacast("NelvoSDK::IPdsMgr"),
             static_cast<void*>(static_cast<NelvoSDK::IPdsMgr*>(&manager)));
    QCOMPARE(manager.qt_metacast("BVUTILITY::ISubject<NelvoSDK::IPdsObserver>"),
             static_cast<void*>(static_cast<BVUTILITY::ISubject<NelvoSDK::IPdsObserver>*>(&manager)));
    QVERIFY(!manager.qt_metacast("NelvoSDK::IProjectInfoMgr"));
}

void TestPdsMgr::methodsInTheirOrder()
{
    const QMetaObject& meta = CPdsMgr::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const char* kind = method.methodType() == QMetaMethod::Signal ? "signal" : "method";
        methods.append(QStringLiteral("%1 %2 %3 [%4]")
                           .arg(QLatin1String(kind), QLatin1String(method.typeName()),
                                QLatin1String(method.methodSignature()),
                                QLatin1String(method.parameterNames().join(' '))));
    }
    QCOMPARE(methods,
             (QStringList{
                 QStringLiteral("signal void bimProjListChanged() []"),
                 QStringLiteral("signal void pdsProjListChanged() []"),
                 QStringLiteral("signal void bCheckedPdsChanged() []"),
                 QStringLiteral("signal void bViewDWGBimListChanged() []"),
                 QStringLiteral("signal void sigGetBimProjList() []"),
                 QStringLiteral("signal void sigGetDWGBimProjList() []"),
                 QStringLiteral("signal void checkListChanged() []"),
                 QStringLiteral("method void onOpenDialog() []"),
                 QStringLiteral("method void onCloseDialog() []"),
                 QStringLiteral("method void getBimProj() []"),
                 QStringLiteral("method void getDWGBimProj() []"),
                 QStringLiteral("method void getPdsProj(QString) [strGuid]"),
                 QStringLiteral("method void checkPdsProj(QString,bool) [strGuid bCheck]"),
                 QStringLiteral("method void checkPdsProj(QString) [strGuid]"),
                 QStringLiteral("method void downLoadBimProj(QString) [bimProj]"),
                 QStringLiteral("method void convertSimplyMode(QString,bool) [bimProj bCompletionFirst]"),
                 QStringLiteral("method void searchBydeptId(QString) [deptId]"),
             }));
}

void TestPdsMgr::propertiesInTheirOrder()
{
    const QMetaObject& meta = CPdsMgr::staticMetaObject;
    QStringList properties;
    for (int i = meta.propertyOffset(); i < meta.propertyCount(); ++i) {
        const QMetaProperty property = meta.property(i);
        QVERIFY(!property.isWritable());
        QVERIFY(!property.isResettable());
        properties.append(QStringLiteral("%1 %2 %3")
                              .arg(QLatin1String(property.typeName()), QLatin1String(property.name()),
                                   QLatin1String(property.notifySignal().name())));
    }
    QCOMPARE(properties, (QStringList{
                             QStringLiteral("QJsonArray bimProjList bimProjListChanged"),
                             QStringLiteral("QJsonArray pdsProjList pdsProjListChanged"),
                             QStringLiteral("bool bCheckedPds bCheckedPdsChanged"),
                             QStringLiteral("QStringList checkList checkListChanged"),
                             QStringLiteral("bool bViewDWGBimList bViewDWGBimListChanged"),
                         }));
}

void TestPdsMgr::downloadStages()
{
    const QMetaObject& meta = CPdsMgr::staticMetaObject;
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 1);
    const QMetaEnum stages = meta.enumerator(meta.enumeratorOffset());
    QCOMPARE(stages.name(), "EDownLoadStatus");
    QStringList entries;
    for (int i = 0; i < stages.keyCount(); ++i)
        entries.append(QStringLiteral("%1=%2").arg(QLatin1String(stages.key(i))).arg(stages.value(i)));
    QCOMPARE(entries, words("DownLoadInitial=0 DownLoading=1 DownLoadSuccess=2 DownLoadError=3"));
}

void TestPdsMgr::newManagerHoldsNothing()
{
    CPdsMgr manager;
    QVERIFY(!manager.GetPlugin());
    QVERIFY(!manager.parent());
    QVERIFY(manager.getBimProjList().isEmpty());
    QVERIFY(manager.getPdsProjList().isEmpty());
    QVERIFY(manager.getCheckList().isEmpty());
    QVERIFY(!manager.isPdsChecked());
    QVERIFY(!manager.isDWGBimListViewed());
    PluginShell plugin;
    manager.SetPlugin(&plugin);
    QCOMPARE(manager.GetPlugin(), &plugin);
    manager.ReservedHook();
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestPdsMgr::mapOfNamesIsAMetaType()
{
    const CPdsMgr manager;
    QVERIFY(QMetaType::type("QMap<QString,QString>") != QMetaType::UnknownType);
}

void TestPdsMgr::destroyedWithoutEverHavingFetched()
{
    const MessageLog log;
    {
        CPdsMgr manager;
    }
    QVERIFY(log.entries().isEmpty());
}

//! The worker thread may or may not have started the request by then.
void TestPdsMgr::destroyedRightAfterARequest()
{
    PdsObserver late;
    for (int round = 0; round < 20; ++round) {
        Pds pds;
        pds.manager.getBimProj();
        pds.manager.getDWGBimProj();
        pds.manager.Attach(&late);
    }
    QCoreApplication::sendPostedEvents();
    QVERIFY(late.calls.isEmpty());
}

void TestPdsMgr::destructionWaitsForTheFetch()
{
    m_services.addFault({Fault::Stall, BimPath, "GET", 0, false});
    auto pds = std::make_unique<Pds>();
    pds->manager.getBimProj();
    QTRY_COMPARE(m_services.targets(), QByteArrayList{"GET /bim/relation/"});
    pds->manager.getDWGBimProj();

    std::atomic<bool> answered{false};
    std::thread service([this, &answered] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        answered = true;
        m_services.clearFaults();
    });
    // Outlives the manager and records any late call.
    PdsObserver late;
    pds->manager.Attach(&late);
    pds.reset();
    const bool waited = answered;
    service.join();
    QVERIFY(waited);
    QCoreApplication::sendPostedEvents();
    QVERIFY(late.calls.isEmpty());
    // The request that waited behind the fetch is not sent.
    QCOMPARE(m_services.targets(), QByteArrayList{"GET /bim/relation/"});
}

void TestPdsMgr::listArrives_data()
{
    QTest::addColumn<bool>("isDwg");
    QTest::newRow("bim") << false;
    QTest::newRow("dwg") << true;
}

void TestPdsMgr::listArrives()
{
    QFETCH(bool, isDwg);
    Pds pds;
    isDwg ? pds.manager.getDWGBimProj() : pds.manager.getBimProj();
    QCOMPARE(pds.calls(), words("cleared"));
    QTRY_COMPARE(pds.shown(), words(QTest::currentDataTag()));
    QCOMPARE(pds.calls(), words("synced bViewDWGBimListChanged bimProjListChanged"));
    QCOMPARE(pds.manager.isDWGBimListViewed(), isDwg);
    QCOMPARE(m_services.targets(), QByteArrayList{"GET " + (isDwg ? DwgPath : BimPath).toLatin1()});
}

void TestPdsMgr::emptyingIsToldBeforeTheRequest_data()
{
    listArrives_data();
}

void TestPdsMgr::emptyingIsToldBeforeTheRequest()
{
    QFETCH(bool, isDwg);
    Pds pds;
    // First shows the list of the other kind, which the call then empties.
    const auto fetch = [&pds](bool dwg) { dwg ? pds.manager.getDWGBimProj() : pds.manager.getBimProj(); };
    fetch(!isDwg);
    QTRY_VERIFY(!pds.shown().isEmpty());
    pds.calls();
    pds.observer.whenCalled = [&](const QString&) {
        QCOMPARE(pds.manager.isDWGBimListViewed(), isDwg);
        QVERIFY(pds.shown().isEmpty());
    };
    QObject::connect(&pds.manager, &CPdsMgr::sigGetBimProjList,
                     [&pds] { pds.observer.calls.append(QStringLiteral("bim asked for")); });
    QObject::connect(&pds.manager, &CPdsMgr::sigGetDWGBimProjList,
                     [&pds] { pds.observer.calls.append(QStringLiteral("dwg asked for")); });
    fetch(isDwg);
    QCOMPARE(pds.calls(), (QStringList{QStringLiteral("cleared"), QLatin1String(QTest::currentDataTag()) +
                                                                      QStringLiteral(" asked for")}));
}

void TestPdsMgr::nothingIsToldUntilTheListArrives()
{
    Pds pds;
    receiveBimList(pds, R"({"ppName":"old"})");
    m_services.addFault({Fault::Stall, DwgPath, "GET", 0, false});
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(m_services.targets().size(), 2);
    QCOMPARE(pds.calls(), words("cleared"));
    // The values have already changed. Only the signals are emitted later.
    QVERIFY(pds.shown().isEmpty());
    QVERIFY(pds.manager.isDWGBimListViewed());
    m_services.clearFaults();
    QTRY_COMPARE(pds.shown(), words("dwg"));
}

void TestPdsMgr::observersAreToldBeforeTheListIsThere()
{
    Pds pds;
    QVector<int> sizes;
    pds.observer.whenCalled = [&](const QString&) { sizes.append(pds.manager.getBimProjList().size()); };
    pds.manager.getBimProj();
    QTRY_COMPARE(pds.shown(), words("bim"));
    pds.manager.getBimProj();
    QTRY_COMPARE(pds.shown(), words("bim"));
    QCOMPARE(sizes, (QVector<int>{0, 0, 0, 0}));
}

void TestPdsMgr::listIsThereBeforeItsKindIsTold()
{
    Pds pds;
    QStringList shown;
    QObject::connect(&pds.manager, &CPdsMgr::bViewDWGBimListChanged, [&] {
        shown += pds.shown();
        pds.manager.searchBydeptId({}); // reads the whole list
        shown += pds.shown();
    });
    pds.manager.getBimProj();
    QTRY_COMPARE(shown, words("bim bim"));
}

void TestPdsMgr::everythingIsToldOnTheGuiThread()
{
    Pds pds;
    QStringList strays;
    const auto check = [&strays](const QString& call) {
        if (QThread::currentThread() != QCoreApplication::instance()->thread())
            strays.append(call);
    };
    pds.observer.whenCalled = check;
    // A direct connection runs on the thread that emits the signal.
    QObject::connect(
        &pds.manager, &CPdsMgr::bimProjListChanged, &pds.manager,
        [&check] { check(QStringLiteral("bimProjListChanged")); }, Qt::DirectConnection);
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.getBimProj();
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(arrived.size(), 2);
    QCOMPARE(strays, QStringList());
}

void TestPdsMgr::failedFetchIsAnEmptyList_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("status");
    QTest::newRow("refuse") << Fault::Refuse << 0;
    QTest::newRow("reset") << Fault::Reset << 0;
    QTest::newRow("no JSON") << Fault::NotJson << 0;
    QTest::newRow("status 500") << Fault::Status << 500;
}

void TestPdsMgr::failedFetchIsAnEmptyList()
{
    QFETCH(Fault, fault);
    QFETCH(int, status);
    if (fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    Pds pds;
    receiveBimList(pds, R"({"ppName":"old"})");
    m_services.addFault({fault, {}, {}, status, false});
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(arrived.size(), 1);
    QCOMPARE(pds.calls(), words("cleared synced bViewDWGBimListChanged bimProjListChanged"));
    QVERIFY(pds.shown().isEmpty());
    QVERIFY(pds.manager.isDWGBimListViewed());
    pds.manager.searchBydeptId({});
    QVERIFY(pds.shown().isEmpty());
}

//! InitBimData does not empty the list when it requests a new one. The failed fetch empties it.
void TestPdsMgr::failedFetchEmptiesWhatWasShown()
{
    Pds pds;
    receiveBimList(pds, R"({"ppName":"old"})");
    m_services.addFault({Fault::Status, {}, {}, 500, false});
    receiveTree(pds, node(L"r"));
    QCOMPARE(pds.calls(), words("synced bViewDWGBimListChanged bimProjListChanged"));
    QVERIFY(pds.shown().isEmpty());
    pds.manager.searchBydeptId({});
    QVERIFY(pds.shown().isEmpty());
}

void TestPdsMgr::failedFetchKeepsTheNames()
{
    Pds pds;
    receiveBimList(pds, R"({"nelvo3dId":"g1","ppName":"一号楼"})");
    m_services.addFault({Fault::Status, {}, {}, 500, false});
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.getBimProj();
    QTRY_COMPARE(arrived.size(), 1);
    QVERIFY(pds.manager.GetBimProjName(L"g1") == L"一号楼");
}

//! The names are not known yet in OnBimProjListSynced, which is called before the list is stored.
void TestPdsMgr::namesAreKnownWhenTheListIsTold()
{
    Pds pds;
    QStringList names;
    const auto ask = [&pds, &names] {
        names.append(QString::fromStdWString(pds.manager.GetBimProjName(L"g1")));
    };
    pds.observer.whenCalled = [&ask](const QString& call) {
        if (call == QLatin1String("synced"))
            ask();
    };
    QObject::connect(&pds.manager, &CPdsMgr::bViewDWGBimListChanged, ask);
    receiveBimList(pds, R"({"nelvo3dId":"g1","ppName":"一号楼"})");
    QCOMPARE(names, (QStringList{QString(), QStringLiteral("一号楼")}));
}

void TestPdsMgr::namesOfBothListsAnswer()
{
    Pds pds;
    QVERIFY(pds.manager.GetBimProjName(L"d1").empty());
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(pds.shown(), words("dwg"));
    receiveBimList(pds, R"({"nelvo3dId":"b1","ppName":"bim"})");
    QVERIFY(pds.manager.GetBimProjName(L"d1") == L"dwg");
    QVERIFY(pds.manager.GetBimProjName(L"b1") == L"bim");
}

//! When the second list arrives, the names of the first one may not be stored yet.
void TestPdsMgr::listsThatArriveTogetherAreNamedInOrder()
{
    Pds pds;
    m_services.setList(DwgPath,
                       R"({"nelvo3dId":"both","dwgName":"first"},{"nelvo3dId":"gone","dwgName":"kept"})");
    m_services.setList(BimPath, R"({"nelvo3dId":"both","ppName":"second"})");
    const auto isNamed = [&pds] {
        return pds.manager.GetBimProjName(L"both") == L"second" &&
               pds.manager.GetBimProjName(L"gone") == L"kept";
    };
    int lists = 0;
    bool isNamedAtOnce = false;
    QObject::connect(&pds.manager, &CPdsMgr::bimProjListChanged, [&] {
        if (++lists == 2)
            isNamedAtOnce = isNamed();
    });
    pds.manager.getDWGBimProj();
    pds.manager.getBimProj();
    pds.manager.getBimProj(); // is sent after the other lists have been emitted
    for (const QDeadlineTimer end(30000); m_services.targets().size() < 3 && !end.hasExpired();)
        QThread::msleep(1);
    QCOMPARE(lists, 0);
    QCoreApplication::sendPostedEvents();
    QVERIFY(lists >= 2);
    QVERIFY(isNamedAtOnce);
    QVERIFY(isNamed());
}

void TestPdsMgr::laterRowNamesTheGuid()
{
    Pds pds;
    receiveBimList(pds, R"({"nelvo3dId":"g","ppName":"first"},{"nelvo3dId":"g","ppName":"second"})");
    QCOMPARE(pds.shown(), words("first second"));
    QVERIFY(pds.manager.GetBimProjName(L"g") == L"second");
}

void TestPdsMgr::namesCompareExactly()
{
    Pds pds;
    // The second row has an empty GUID. GetBimProjName still returns no name for an empty GUID.
    receiveBimList(pds, R"({"nelvo3dId":"Ab","ppName":"name"},{"ppName":"nameless"})");
    QVERIFY(pds.manager.GetBimProjName(L"ab").empty());
    QVERIFY(pds.manager.GetBimProjName(L"Ab ").empty());
    QVERIFY(pds.manager.GetBimProjName({}).empty());
}

void TestPdsMgr::quickSwitchesAreAnsweredInOrder()
{
    Pds pds;
    QStringList shown;
    QObject::connect(&pds.manager, &CPdsMgr::bimProjListChanged, [&] {
        shown.append(pds.shown().join(QLatin1Char(',')) + QString::number(pds.manager.isDWGBimListViewed()));
    });
    m_services.addFault({Fault::Delay, BimPath, "GET", 50, false});
    pds.manager.getBimProj();
    pds.manager.getDWGBimProj();
    pds.manager.getBimProj();
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(shown.size(), 4);
    // The lists arrive in the order of the requests. The flag is always that of the last request.
    QCOMPARE(shown, words("bim1 dwg1 bim1 dwg1"));
}

void TestPdsMgr::arrivingListDropsTheFilter()
{
    Pds pds;
    receiveTree(pds, node(L"r", {node(L"a")}));
    const QByteArray rows = R"({"ppName":"one","deptId":"a"},{"ppName":"two","deptId":"r"})";
    receiveBimList(pds, rows);
    pds.manager.searchBydeptId(QStringLiteral("a"));
    QCOMPARE(pds.shown(), words("one"));
    receiveBimList(pds, rows);
    QCOMPARE(pds.shown(), words("one two"));
}

void TestPdsMgr::downloadPassesOneGuid()
{
    Pds pds;
    pds.manager.checkPdsProj(QStringLiteral("checked1"));
    pds.manager.checkPdsProj(QStringLiteral("checked2"));
    pds.calls();
    pds.manager.downLoadBimProj(QStringLiteral("guid"));
    QCOMPARE(pds.calls(), QStringList{QStringLiteral("download 1: guid")});
    pds.manager.downLoadBimProj({});
    QCOMPARE(pds.calls(), QStringList{QStringLiteral("download 1: ")});
}

void TestPdsMgr::conversionPassesItsArguments()
{
    Pds pds;
    pds.manager.convertSimplyMode(QStringLiteral("guid"), true);
    pds.manager.convertSimplyMode(QStringLiteral("guid"), false);
    QCOMPARE(pds.calls(), (QStringList{QStringLiteral("convert guid 1"), QStringLiteral("convert guid 0")}));
    QVERIFY(m_services.log().requests().isEmpty());
}

void TestPdsMgr::nobodyNeedsToListen()
{
    CPdsMgr manager;
    manager.downLoadBimProj(QStringLiteral("guid"));
    manager.convertSimplyMode(QStringLiteral("guid"), true);
    manager.onOpenDialog();
    manager.onCloseDialog();
    const QSignalSpy arrived(&manager, &CPdsMgr::bimProjListChanged);
    manager.getBimProj();
    QTRY_COMPARE(arrived.size(), 1);
}

void TestPdsMgr::detachedObserverHearsNothing()
{
    Pds pds;
    PdsObserver other;
    pds.manager.Attach(&other);
    pds.manager.Attach(&other);
    pds.manager.downLoadBimProj(QStringLiteral("guid"));
    QCOMPARE(other.calls.size(), 1);
    pds.manager.Detach(&other);
    pds.manager.downLoadBimProj(QStringLiteral("guid"));
    QCOMPARE(other.calls.size(), 1);
    QCOMPARE(pds.calls().size(), 2);
}

void TestPdsMgr::pdsProjectsBelowAModel()
{
    const auto child = [](const char* id, const char* name, const char* type, const char* source = nullptr) {
        VLSmartDB::ObjectRecord record;
        record.id = QString::fromUtf8(id);
        record.name = QString::fromUtf8(name);
        record.type = QString::fromUtf8(type);
        if (source)
            record.properties.insert(QStringLiteral("editor_import_source_type"), QString::fromUtf8(source));
        return record;
    };
    VLSmartDB::ObjectRecord project;
    project.id = ProjectGuid;
    project.children = {
        child("AAAAAAAA-BBBB-CCCC-DDDD-EEEEEEEEEEEE", "主体结构", "PDS"),
        child("drawing", "图纸", "DWG"),
        child("lower", "小写", "dwg"),
        child("imported", "导入", "PDS", "fbx"),
        child("empty-source", "空来源", "PDS", ""),
    };
    QVERIFY(VLSmartDB::addObject(project));

    Pds pds;
    pds.manager.checkPdsProj(QStringLiteral("checked"));
    pds.calls();
    pds.manager.getPdsProj(ProjectGuid);
    QCOMPARE(pds.calls(), words("bCheckedPdsChanged pdsProjListChanged checkListChanged"));
    QCOMPARE(column(pds.manager.getPdsProjList(), "guid"),
             words("aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee lower empty-source"));
    QCOMPARE(column(pds.manager.getPdsProjList(), "name"), words("主体结构 小写 空来源"));
    QCOMPARE(pds.manager.getPdsProjList().first().toObject().keys(), words("guid name"));
    QVERIFY(pds.manager.getCheckList().isEmpty());
    QVERIFY(!pds.manager.isPdsChecked());
}

void TestPdsMgr::modelThatIsNotThereChangesNothing()
{
    VLSmartDB::ObjectRecord project;
    project.id = ProjectGuid;
    project.children = {{QStringLiteral("c"), QStringLiteral("child"), QStringLiteral("PDS"), {}, {}}};
    QVERIFY(VLSmartDB::addObject(project));
    Pds pds;
    pds.manager.getPdsProj(ProjectGuid);
    pds.manager.checkPdsProj(QStringLiteral("checked"));
    pds.calls();

    pds.manager.getPdsProj(QStringLiteral("99999999-2222-3333-4444-555555555555"));
    pds.manager.getPdsProj({});
    QVERIFY(pds.calls().isEmpty());
    QCOMPARE(column(pds.manager.getPdsProjList(), "guid"), words("c"));
    QCOMPARE(pds.manager.getCheckList(), words("checked"));
}

void TestPdsMgr::modelWithoutChildrenEmptiesTheList()
{
    VLSmartDB::ObjectRecord bare;
    bare.id = QStringLiteral("bare");
    VLSmartDB::ObjectRecord project;
    project.id = ProjectGuid;
    project.children = {{QStringLiteral("c"), QStringLiteral("child"), QStringLiteral("PDS"), {}, {}}};
    QVERIFY(VLSmartDB::addObject(bare));
    QVERIFY(VLSmartDB::addObject(project));
    Pds pds;
    pds.manager.getPdsProj(ProjectGuid);
    QCOMPARE(pds.manager.getPdsProjList().size(), 1);
    pds.calls();
    pds.manager.getPdsProj(QStringLiteral("bare"));
    QVERIFY(pds.manager.getPdsProjList().isEmpty());
    QCOMPARE(pds.calls(), words("bCheckedPdsChanged pdsProjListChanged checkListChanged"));
}

void TestPdsMgr::textThatIsNoGuidIsLookedUp()
{
    VLSmartDB::ObjectRecord project;
    project.id = QStringLiteral("模型七");
    project.children = {{QStringLiteral("c"), QStringLiteral("child"), QStringLiteral("PDS"), {}, {}}};
    QVERIFY(VLSmartDB::addObject(project));
    Pds pds;
    pds.manager.getPdsProj(QStringLiteral("模型七"));
    QCOMPARE(column(pds.manager.getPdsProjList(), "name"), words("child"));
}

void TestPdsMgr::checkingTwiceGivesTwoEntries()
{
    Pds pds;
    for (const char* guid : {"a", "b", "a"})
        pds.manager.checkPdsProj(QString::fromLatin1(guid), true);
    QCOMPARE(pds.manager.getCheckList(), words("a b a"));
    pds.calls();
    pds.manager.checkPdsProj(QStringLiteral("a"), false);
    QCOMPARE(pds.manager.getCheckList(), words("b a"));
    QVERIFY(pds.manager.isPdsChecked());
    QCOMPARE(pds.calls(), words("bCheckedPdsChanged checkListChanged"));
    pds.manager.checkPdsProj(QStringLiteral("b"), false);
    pds.manager.checkPdsProj(QStringLiteral("a"), false);
    QVERIFY(!pds.manager.isPdsChecked());
}

void TestPdsMgr::uncheckingAStrangerStillTells()
{
    Pds pds;
    pds.manager.checkPdsProj(QStringLiteral("a"));
    pds.calls();
    pds.manager.checkPdsProj(QStringLiteral("A"), false);
    QCOMPARE(pds.manager.getCheckList(), words("a"));
    QCOMPARE(pds.calls(), words("bCheckedPdsChanged checkListChanged"));
}

void TestPdsMgr::emptyEntryCountsAsChecked()
{
    Pds pds;
    pds.manager.checkPdsProj({});
    QCOMPARE(pds.manager.getCheckList(), QStringList{QString()});
    QVERIFY(pds.manager.property("bCheckedPds").toBool());
}

void TestPdsMgr::checkedEntriesSurviveAList()
{
    Pds pds;
    pds.manager.checkPdsProj(QStringLiteral("a"));
    receiveBimList(pds, R"({"nelvo3dId":"b"})");
    QCOMPARE(pds.manager.getCheckList(), words("a"));
    QVERIFY(pds.manager.isPdsChecked());
}

void TestPdsMgr::checkingIsTheDefault()
{
    Pds pds;
    QVERIFY(QMetaObject::invokeMethod(&pds.manager, "checkPdsProj", Q_ARG(QString, QStringLiteral("a"))));
    QVERIFY(QMetaObject::invokeMethod(&pds.manager, "checkPdsProj", Q_ARG(QString, QStringLiteral("b")),
                                      Q_ARG(bool, true)));
    QVERIFY(QMetaObject::invokeMethod(&pds.manager, "checkPdsProj", Q_ARG(QString, QStringLiteral("a")),
                                      Q_ARG(bool, false)));
    QCOMPARE(pds.manager.property("checkList").toStringList(), words("b"));
}

void TestPdsMgr::departmentAndAllBelowIt()
{
    Pds pds;
    receiveTree(pds, node(L"r", {node(L"a", {node(L"a1", {node(L"a11")})}), node(L"b")}));
    receiveBimList(pds, R"({"ppName":"below","deptId":"a11"},{"ppName":"above","deptId":"r"},
        {"ppName":"self","deptId":"a1"},{"ppName":"beside","deptId":"b"},{"ppName":"below2","deptId":"a11"})");
    pds.manager.searchBydeptId(QStringLiteral("a1"));
    QCOMPARE(pds.shown(), words("below self below2"));
    QCOMPARE(pds.calls(), words("bimProjListChanged"));
    // Each filter applies to the whole list.
    pds.manager.searchBydeptId(QStringLiteral("b"));
    QCOMPARE(pds.shown(), words("beside"));
}

void TestPdsMgr::emptyDepartmentShowsAll()
{
    Pds pds;
    receiveTree(pds, node(L"r", {node(L"a")}));
    receiveBimList(pds, R"({"ppName":"one","deptId":"a"},{"ppName":"two","deptId":"elsewhere"})");
    pds.manager.searchBydeptId(QStringLiteral("a"));
    QCOMPARE(pds.shown(), words("one"));
    pds.calls();
    pds.manager.searchBydeptId({});
    QCOMPARE(pds.shown(), words("one two"));
    QCOMPARE(pds.calls(), words("bimProjListChanged"));
}

void TestPdsMgr::emptyDepartmentOnAnEmptyTree()
{
    Pds pds;
    receiveBimList(pds, R"({"ppName":"one","deptId":"a"},{"ppName":"two"})");
    pds.manager.searchBydeptId(QStringLiteral("unknown"));
    QCOMPARE(pds.shown(), QStringList());
    pds.manager.searchBydeptId({});
    QCOMPARE(pds.shown(), words("one two"));
    QCOMPARE(pds.calls(), words("bimProjListChanged"));
}

void TestPdsMgr::unknownDepartmentEmptiesQuietly()
{
    Pds pds;
    receiveBimList(pds, R"({"ppName":"one","deptId":"a"})");
    pds.manager.searchBydeptId(QStringLiteral("a"));
    QVERIFY(pds.calls().isEmpty());
    QVERIFY(pds.manager.property("bimProjList").toJsonArray().isEmpty());
}

void TestPdsMgr::departmentThatCannotBeChosenFilters()
{
    Pds pds;
    receiveTree(pds, node(L"r", {node(L"a", {}, false)}, false));
    receiveBimList(pds, R"({"ppName":"one","deptId":"a"},{"ppName":"two","deptId":"r"})");
    pds.manager.searchBydeptId(QStringLiteral("a"));
    QCOMPARE(pds.shown(), words("one"));
}

void TestPdsMgr::departmentsCompareExactly()
{
    Pds pds;
    receiveTree(pds, node(L"Dept"));
    receiveBimList(pds, R"({"ppName":"one","deptId":"dept"},{"ppName":"two","deptId":"Dept"})");
    pds.manager.searchBydeptId(QStringLiteral("Dept"));
    QCOMPARE(pds.shown(), words("two"));
}

void TestPdsMgr::projectWithoutDepartment()
{
    const QByteArray rows = R"({"ppName":"free"},{"ppName":"bound","deptId":"a"})";
    Pds pds;
    receiveTree(pds, node(L"r", {node(L"a")}));
    receiveBimList(pds, rows);
    pds.manager.searchBydeptId(QStringLiteral("r"));
    QCOMPARE(pds.shown(), words("bound"));

    // A unit without an id below the chosen unit matches the projects without a department.
    Pds odd;
    odd.projects.tree = node(L"r", {node({})});
    odd.manager.InitBimData();
    QTRY_COMPARE(odd.shown(), words("free bound"));
    odd.manager.searchBydeptId(QStringLiteral("r"));
    QCOMPARE(odd.shown(), words("free"));
}

void TestPdsMgr::initialDataFillsTheTreeAndAsksForTheList()
{
    Pds pds;
    pds.manager.getDWGBimProj();
    QTRY_COMPARE(pds.shown(), words("dwg"));
    pds.calls();
    m_services.addFault({Fault::Stall, BimPath, "GET", 0, false});
    pds.projects.tree = node(L"r");
    pds.manager.InitBimData();
    QTRY_COMPARE(m_services.targets(), (QByteArrayList{"GET /bim/relation/dwg", "GET /bim/relation/"}));
    // The list and the flag have not changed, and no observer has been called.
    QVERIFY(pds.calls().isEmpty());
    QCOMPARE(pds.shown(), words("dwg"));
    m_services.clearFaults();
    QTRY_COMPARE(pds.shown(), words("bim"));
    QVERIFY(pds.manager.isDWGBimListViewed());
}

void TestPdsMgr::initialDataGoesInItsOrder()
{
    QWebChannel channel;
    HostContext host;
    host.channel = &channel;
    Pds pds;
    pds.plugin.SetHostContext(static_cast<NelvoSDK::IHostContext*>(&host));
    pds.projects.tree = node(L"r");
    QStringList seen;
    QObject::connect(&pds.manager, &CPdsMgr::sigGetBimProjList, [&] {
        // searchBydeptId emits a signal only if the tree already contains the department.
        pds.manager.searchBydeptId(QStringLiteral("r"));
        seen = pds.calls() + channel.registeredObjects().keys();
    });
    pds.manager.InitBimData();
    QVERIFY(pds.projects.wasAskedForEmpty);
    QCOMPARE(seen, words("bimProjListChanged"));
    QCOMPARE(channel.registeredObjects().keys(), words("bimObject"));
}

void TestPdsMgr::initialDataAgainAppendsTheTree()
{
    Pds pds;
    pds.projects.tree = node(L"first");
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.manager.InitBimData();
    pds.projects.tree = node(L"second");
    pds.manager.InitBimData();
    QTRY_COMPARE(arrived.size(), 2);
    receiveBimList(pds, R"({"ppName":"one","deptId":"first"},{"ppName":"two","deptId":"second"})");
    pds.manager.searchBydeptId(QStringLiteral("first"));
    QCOMPARE(pds.shown(), words("one"));
    pds.manager.searchBydeptId(QStringLiteral("second"));
    QCOMPARE(pds.shown(), words("two"));
}

void TestPdsMgr::bimObjectStandsOnTheChannel()
{
    QWebChannel channel;
    HostContext host;
    host.channel = &channel;
    {
        Pds pds;
        pds.plugin.SetHostContext(static_cast<NelvoSDK::IHostContext*>(&host));
        QVERIFY(channel.registeredObjects().isEmpty());
        pds.manager.InitBimData();
        pds.manager.InitBimData();
        QCOMPARE(channel.registeredObjects().keys(), words("bimObject"));
        const QMetaObject* meta =
            channel.registeredObjects().value(QStringLiteral("bimObject"))->metaObject();
        QCOMPARE(meta->className(), "NelvoPlugin::BIMObject");
        QCOMPARE(meta->methodCount(), meta->methodOffset());
        QCOMPARE(meta->propertyCount(), meta->propertyOffset());
    }
    QVERIFY(channel.registeredObjects().isEmpty());
}

void TestPdsMgr::initialDataWithoutAChannel()
{
    HostContext host;
    Pds pds;
    const QSignalSpy arrived(&pds.manager, &CPdsMgr::bimProjListChanged);
    pds.projects.tree = node(L"r");
    pds.manager.InitBimData();
    pds.plugin.SetHostContext(static_cast<NelvoSDK::IHostContext*>(&host));
    pds.manager.InitBimData();
    QTRY_COMPARE(arrived.size(), 2);
    receiveBimList(pds, R"({"ppName":"one","deptId":"r"},{"ppName":"two"})");
    pds.manager.searchBydeptId(QStringLiteral("r"));
    QCOMPARE(pds.shown(), words("one"));
}

QTEST_GUILESS_MAIN(TestPdsMgr)
#include "test_pdsmgr.moc"
