#include "bim/bimprojworker.h"

#include "tests/bim/modelservice.h"
#include "tests/support/messagelog.h"
#include "tests/support/wine.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>
#include <QtTest>

using NelvoDevkit::Fault;
using NelvoDevkit::LoggedRequest;
using NelvoPlugin::CBimProjWorker;
using TestSupport::MessageLog;

namespace {

const auto BimFailed = QStringLiteral("CProjectInfoMgr::getBimProjList getprojList /scene/project falied!");
const auto DwgFailed =
    QStringLiteral("CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!");

//! The lists that the worker has emitted, in order.
struct Answers {
    explicit Answers(const CBimProjWorker& worker) : spy(&worker, &CBimProjWorker::sigSyncBimProjList) {}
    QJsonArray array(int index) const { return spy.at(index).at(0).toJsonArray(); }
    bool success(int index) const { return spy.at(index).at(1).toBool(); }

    QSignalSpy spy;
};

QStringList namesIn(const QJsonArray& records)
{
    QStringList names;
    for (const QJsonValue& record : records)
        names.append(record.toObject().value(QStringLiteral("name")).toString());
    return names;
}

} // namespace

Q_DECLARE_METATYPE(NelvoDevkit::Fault)

class TestBimProjWorker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void metaObject();
    void bimListToTheByte();
    void dwgListToTheByte();
    void rowsKeepOrderAndDuplicates();
    void rowThatIsNoObjectGivesDefaults();
    void answerIsLogged();
    void logComesBeforeTheAnswer();
    void answerWithoutDataIsAnEmptySuccess_data();
    void answerWithoutDataIsAnEmptySuccess();
    void failedCallGivesAnEmptyFailure_data();
    void failedCallGivesAnEmptyFailure();
    void withoutAnAddressTheCallFails();
    void addressIsReadAtEachCall();
    void requestDuringARequestWaits();
    void requestsOnAThreadAreAnsweredInOrder();

private:
    ModelService m_services;
};

void TestBimProjWorker::init()
{
    m_services.reset();
}

void TestBimProjWorker::metaObject()
{
    const QMetaObject& meta = CBimProjWorker::staticMetaObject;
    QByteArrayList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        signatures.append(meta.method(i).methodSignature());
    QCOMPARE(signatures, (QByteArrayList{"sigSyncBimProjList(QJsonArray,bool)", "getBimProjList()",
                                         "getDWGBimProjList()"}));
    QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), (QByteArrayList{"array", "bSuccess"}));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodType(), QMetaMethod::Slot);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void TestBimProjWorker::bimListToTheByte()
{
    m_services.setList(BimPath, R"({"nelvo3dId":"g","ppName":"楼","projType":1})");
    CBimProjWorker worker;
    const Answers answers(worker);
    worker.getBimProjList();

    QCOMPARE(m_services.targets(), QByteArrayList{"GET /bim/relation/"});
    const LoggedRequest request = m_services.log().requests().first();
    QVERIFY(request.body.isEmpty());
    QVERIFY(request.header("Content-Type").isNull());
    QCOMPARE(request.header("Accept"), QByteArray("*/*"));
    QCOMPARE(answers.spy.size(), 1);
    QVERIFY(answers.success(0));
    QCOMPARE(QJsonDocument(answers.array(0)).toJson(QJsonDocument::Compact),
             QByteArray(R"([{"deptId":"","guid":"g","name":"楼","ppid":0,)"
                        R"("profImg":"qrc:/NelvoPlugin/qmls/images/profession_1.png",)"
                        R"("profTipText":"土建预算","profession":1,"size":0}])"));
}

void TestBimProjWorker::dwgListToTheByte()
{
    m_services.setList(DwgPath, R"({"nelvo3dId":"g","dwgName":"图","projType":1,"projectSize":9})");
    CBimProjWorker worker;
    const Answers answers(worker);
    worker.getDWGBimProjList();

    QCOMPARE(m_services.targets(), QByteArrayList{"GET /bim/relation/dwg"});
    QCOMPARE(answers.spy.size(), 1);
    QVERIFY(answers.success(0));
    QCOMPARE(QJsonDocument(answers.array(0)).toJson(QJsonDocument::Compact),
             QByteArray(R"([{"deptId":"","guid":"g","name":"图","ppid":0,"profImg":"",)"
                        R"("profTipText":"DWG","profession":1}])"));
}

void TestBimProjWorker::rowsKeepOrderAndDuplicates()
{
    m_services.setList(BimPath, R"({"ppName":"c"},{"ppName":"a"},{"ppName":"c"},{"ppName":"b"})");
    CBimProjWorker worker;
    const Answers answers(worker);
    worker.getBimProjList();
    QCOMPARE(namesIn(answers.array(0)), QStringLiteral("c a c b").split(QLatin1Char(' ')));
}

void TestBimProjWorker::rowThatIsNoObjectGivesDefaults()
{
    for (const QString& path : {BimPath, DwgPath})
        m_services.setList(path, R"(7,null,"text",[])");
    CBimProjWorker worker;
    const Answers answers(worker);
    worker.getBimProjList();
    worker.getDWGBimProjList();
    for (const int list : {0, 1}) {
        const QJsonArray records = answers.array(list);
        QCOMPARE(records.size(), 4);
        for (const QJsonValue record : records) {
            QCOMPARE(record.toObject().value(QStringLiteral("guid")), QJsonValue(QString()));
            QCOMPARE(record.toObject().value(QStringLiteral("profTipText")).toString(),
                     list == 0 ? QStringLiteral("其他类型") : QStringLiteral("DWG"));
        }
    }
}

void TestBimProjWorker::answerIsLogged()
{
    CBimProjWorker worker;
    const MessageLog log;
    worker.getBimProjList();
    worker.getDWGBimProjList();
    QCOMPARE(log.debugs().size(), 2);
    QVERIFY2(log.debugs().first().contains(QStringLiteral(R"({"data":[{"nelvo3dId":"b1","ppName":"bim"}]})")),
             qPrintable(log.debugs().first()));
    QVERIFY2(log.debugs().last().contains(QStringLiteral(R"("nelvo3dId":"d1")")),
             qPrintable(log.debugs().last()));
    QVERIFY(log.warnings().isEmpty());
}

void TestBimProjWorker::logComesBeforeTheAnswer()
{
    CBimProjWorker worker;
    const MessageLog log;
    QList<int> linesBefore;
    connect(&worker, &CBimProjWorker::sigSyncBimProjList, this,
            [&] { linesBefore.append(log.debugs().size()); });
    worker.getBimProjList();
    m_services.addFault({Fault::Status, {}, {}, 500, false});
    worker.getBimProjList();
    QCOMPARE(linesBefore, (QList<int>{1, 2}));
}

void TestBimProjWorker::answerWithoutDataIsAnEmptySuccess_data()
{
    QTest::addColumn<QByteArray>("body");
    for (const char* body : {"{}", R"({"data":null})", R"({"data":{"a":1}})", R"({"data":[]})", "[1]"})
        QTest::addRow("%s", body) << QByteArray(body);
}

void TestBimProjWorker::answerWithoutDataIsAnEmptySuccess()
{
    QFETCH(QByteArray, body);
    for (const QString& path : {BimPath, DwgPath})
        m_services.setAnswer(path, body);
    CBimProjWorker worker;
    const Answers answers(worker);
    worker.getBimProjList();
    worker.getDWGBimProjList();
    QCOMPARE(answers.spy.size(), 2);
    for (const int list : {0, 1}) {
        QVERIFY(answers.success(list));
        QVERIFY(answers.array(list).isEmpty());
    }
}

void TestBimProjWorker::failedCallGivesAnEmptyFailure_data()
{
    QTest::addColumn<Fault>("fault");
    QTest::addColumn<int>("status");
    QTest::newRow("refuse") << Fault::Refuse << 0;
    QTest::newRow("reset") << Fault::Reset << 0;
    QTest::newRow("cut body") << Fault::CutBody << 0;
    QTest::newRow("no JSON") << Fault::NotJson << 0;
    QTest::newRow("status 401") << Fault::Status << 401;
    QTest::newRow("status 500") << Fault::Status << 500;
    QTest::newRow("endless redirect") << Fault::EndlessRedirect << 0;
}

void TestBimProjWorker::failedCallGivesAnEmptyFailure()
{
    QFETCH(Fault, fault);
    QFETCH(int, status);
    if (fault == Fault::Reset && TestSupport::isUnderWine())
        QSKIP(TestSupport::ResetsGoUnnoticed);
    m_services.addFault({fault, {}, {}, status, false});
    CBimProjWorker worker;
    const Answers answers(worker);
    const MessageLog log;
    worker.getBimProjList();
    worker.getDWGBimProjList();

    QCOMPARE(answers.spy.size(), 2);
    for (const int index : {0, 1}) {
        QVERIFY(!answers.success(index));
        QVERIFY(answers.array(index).isEmpty());
    }
    QCOMPARE(log.debugs(), (QStringList{BimFailed, DwgFailed}));
    QCOMPARE(log.warnings().size(), 2);
}

void TestBimProjWorker::withoutAnAddressTheCallFails()
{
    QCoreApplication::instance()->setProperty("sdkAddr", QVariant());
    CBimProjWorker worker;
    const Answers answers(worker);
    const MessageLog log;
    worker.getBimProjList();
    QCOMPARE(answers.spy.size(), 1);
    QVERIFY(!answers.success(0));
    QCOMPARE(log.debugs(), QStringList{BimFailed});
}

void TestBimProjWorker::addressIsReadAtEachCall()
{
    CBimProjWorker worker;
    const Answers answers(worker);
    QCoreApplication::instance()->setProperty("sdkAddr", QVariant());
    worker.getBimProjList();
    QCoreApplication::instance()->setProperty("sdkAddr", m_services.editorUrl());
    worker.getBimProjList();
    QVERIFY(!answers.success(0));
    QVERIFY(answers.success(1));
}

void TestBimProjWorker::requestDuringARequestWaits()
{
    CBimProjWorker worker;
    const Answers answers(worker);
    m_services.addFault({Fault::Stall, BimPath, "GET", 0, true});
    // Both timers fire while the first request waits for its reply, which arrives after them.
    QTimer::singleShot(0, &worker, &CBimProjWorker::getDWGBimProjList);
    QTimer::singleShot(0, &worker, [&] {
        worker.getBimProjList();
        QVERIFY(answers.spy.isEmpty());
        m_services.clearFaults();
    });
    worker.getBimProjList();

    QTRY_COMPARE(answers.spy.size(), 3);
    QCOMPARE(namesIn(answers.array(0)), QStringList{QStringLiteral("bim")});
    QCOMPARE(namesIn(answers.array(1)), QStringList{QStringLiteral("dwg")});
    QCOMPARE(namesIn(answers.array(2)), QStringList{QStringLiteral("bim")});
    QCOMPARE(m_services.targets(),
             (QByteArrayList{"GET /bim/relation/", "GET /bim/relation/dwg", "GET /bim/relation/"}));
}

void TestBimProjWorker::requestsOnAThreadAreAnsweredInOrder()
{
    QThread thread;
    CBimProjWorker worker;
    worker.moveToThread(&thread);
    thread.start();
    QStringList names;
    connect(&worker, &CBimProjWorker::sigSyncBimProjList, this,
            [&names](const QJsonArray& array) { names.append(namesIn(array)); });
    const MessageLog log;
    QStringList expected;
    for (int round = 0; round < 10; ++round) {
        QMetaObject::invokeMethod(&worker, &CBimProjWorker::getBimProjList);
        QMetaObject::invokeMethod(&worker, &CBimProjWorker::getDWGBimProjList);
        expected << QStringLiteral("bim") << QStringLiteral("dwg");
    }
    QTRY_COMPARE(names.size(), expected.size());
    thread.quit();
    thread.wait();
    QCOMPARE(names, expected);
    QVERIFY2(log.warnings().isEmpty(), qPrintable(log.warnings().join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestBimProjWorker)
#include "test_bimprojworker.moc"
