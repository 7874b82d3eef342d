#include "tasks/threadpool.h"

#include <QCoreApplication>
#include <QPair>
#include <QProcess>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>
#include <QVector>
#include <QtTest>

#include <functional>
#include <memory>

using VCIM::ThreadPool;

namespace {

using JobResult = QPair<int, bool>; // number and verdict

const char* const QuitFirst = "quit-first";
const char* const OnThePool = "on-the-pool";

void startTalkingJob()
{
    ThreadPool::instance()->start(
        [] {
            puts("job done");
            return true;
        },
        [](bool) { puts("result delivered"); });
}

//! The main function of the process in processWithoutAnEventLoop.
int runWithoutAnEventLoop(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QThreadPool& pool = *QThreadPool::globalInstance();
    pool.setMaxThreadCount(1);
    if (qstrcmp(argv[1], OnThePool) == 0)
        pool.start(startTalkingJob);
    else
        startTalkingJob();
    return pool.waitForDone() ? 0 : 1;
}

} // namespace

class TestThreadPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void isOneObjectWithoutParentOrMembers();
    void jobRunsOffThisThreadAndItsResultComesBackHere();
    void verdictReachesTheResult_data();
    void verdictReachesTheResult();
    void startDoesNotBlock();
    void resultWaitsForTheEventLoop();
    void resultsComeInTheOrderInWhichTheJobsEnd();
    void jobsEndInAnyOrderAndEachGetsItsOwnResult();
    void functionObjectsAreCopiedAtStart();
    void taskIsGoneWhenItsResultArrives();
    void resultMayStartTheNextJob();
    void waitingJobsTakeTheirTurn();
    void noJobGoesBeforeOthersOfThePool();
    void processWithoutAnEventLoop_data();
    void processWithoutAnEventLoop();
};

//! The machine may have one core; tasks that wait for each other need a thread each.
void TestThreadPool::initTestCase()
{
    QThreadPool::globalInstance()->setMaxThreadCount(4);
}

void TestThreadPool::cleanup()
{
    QVERIFY(QThreadPool::globalInstance()->waitForDone());
    QCoreApplication::processEvents();
}

void TestThreadPool::isOneObjectWithoutParentOrMembers()
{
    ThreadPool* pool = ThreadPool::instance();
    QCOMPARE(ThreadPool::instance(), pool);
    QVERIFY(!pool->parent());
    QCOMPARE(pool->thread(), QThread::currentThread());
    QCOMPARE(ThreadPool::staticMetaObject.className(), "VCIM::ThreadPool");
    QCOMPARE(ThreadPool::staticMetaObject.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(ThreadPool::staticMetaObject.propertyCount(), QObject::staticMetaObject.propertyCount());
}

void TestThreadPool::jobRunsOffThisThreadAndItsResultComesBackHere()
{
    QThread* jobThread = nullptr;
    QThread* resultThread = nullptr;
    ThreadPool::instance()->start(
        [&jobThread] {
            jobThread = QThread::currentThread();
            return true;
        },
        [&resultThread](bool) { resultThread = QThread::currentThread(); });
    QTRY_VERIFY(resultThread != nullptr);
    QCOMPARE(resultThread, QThread::currentThread());
    QVERIFY(jobThread != nullptr);
    QVERIFY(jobThread != QThread::currentThread());
}

void TestThreadPool::verdictReachesTheResult_data()
{
    QTest::addColumn<bool>("verdict");
    QTest::newRow("true") << true;
    QTest::newRow("false") << false;
}

void TestThreadPool::verdictReachesTheResult()
{
    QFETCH(bool, verdict);
    QVector<bool> results;
    ThreadPool::instance()->start([verdict] { return verdict; },
                                  [&results](bool result) { results.append(result); });
    QTRY_COMPARE(results, QVector<bool>{verdict});
}

void TestThreadPool::startDoesNotBlock()
{
    QSemaphore goOn;
    int results = 0;
    ThreadPool::instance()->start(
        [&goOn] {
            goOn.acquire();
            return true;
        },
        [&results](bool) { ++results; });
    // The task cannot have ended: it waits for the next step.
    goOn.release();
    QTRY_COMPARE(results, 1);
}

void TestThreadPool::resultWaitsForTheEventLoop()
{
    int results = 0;
    ThreadPool::instance()->start([] { return true; }, [&results](bool) { ++results; });
    QVERIFY(QThreadPool::globalInstance()->waitForDone());
    QCOMPARE(results, 0);
    QCoreApplication::processEvents();
    QCOMPARE(results, 1);
}

void TestThreadPool::resultsComeInTheOrderInWhichTheJobsEnd()
{
    QVector<JobResult> results;
    for (int job = 0; job < 3; ++job) {
        ThreadPool::instance()->start([job] { return job != 1; },
                                      [&results, job](bool verdict) {
                                          results.append({job, verdict});
                                      });
        QVERIFY(QThreadPool::globalInstance()->waitForDone());
    }
    QVERIFY(results.isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(results, (QVector<JobResult>{{0, true}, {1, false}, {2, true}}));
}

//! Each task waits for the result of the task that was started after it.
void TestThreadPool::jobsEndInAnyOrderAndEachGetsItsOwnResult()
{
    QSemaphore told[4];
    told[3].release();
    QVector<JobResult> results;
    for (int job = 0; job < 3; ++job) {
        ThreadPool::instance()->start(
            [&told, job] {
                told[job + 1].acquire();
                return job != 1;
            },
            [&told, &results, job](bool verdict) {
                results.append({job, verdict});
                told[job].release();
            });
    }
    QTRY_COMPARE(results, (QVector<JobResult>{{2, true}, {1, false}, {0, true}}));
}

void TestThreadPool::functionObjectsAreCopiedAtStart()
{
    const auto token = std::make_shared<int>();
    int results = 0;
    {
        std::function<bool()> task = [token] { return token.use_count() > 1; };
        std::function<void(bool)> onResult = [token, &results](bool verdict) { results += verdict ? 1 : 0; };
        ThreadPool::instance()->start(task, onResult);
        task = nullptr;
        onResult = nullptr;
    }
    QTRY_COMPARE(results, 1);
    QVERIFY(QThreadPool::globalInstance()->waitForDone());
    QCoreApplication::processEvents();
    QCOMPARE(token.use_count(), 1L); // no copy exists any longer
}

void TestThreadPool::taskIsGoneWhenItsResultArrives()
{
    auto token = std::make_shared<int>();
    const std::weak_ptr<int> watch = token;
    bool goneAtResult = false;
    ThreadPool::instance()->start([token = std::move(token)] { return token != nullptr; },
                                  [&goneAtResult, watch](bool) { goneAtResult = watch.expired(); });
    QVERIFY(QThreadPool::globalInstance()->waitForDone());
    QVERIFY(watch.expired());
    QCoreApplication::processEvents();
    QVERIFY(goneAtResult);
}

void TestThreadPool::resultMayStartTheNextJob()
{
    QVector<int> results;
    ThreadPool::instance()->start([] { return true; },
                                  [&results](bool) {
                                      results.append(1);
                                      ThreadPool::instance()->start([] { return true; },
                                                                    [&results](bool) { results.append(2); });
                                  });
    QTRY_COMPARE(results, (QVector<int>{1, 2}));
}

void TestThreadPool::waitingJobsTakeTheirTurn()
{
    constexpr int jobs = 50; // more than the number of threads
    int results = 0;
    for (int job = 0; job < jobs; ++job)
        ThreadPool::instance()->start([] { return true; }, [&results](bool) { ++results; });
    QTRY_COMPARE(results, jobs);
}

void TestThreadPool::noJobGoesBeforeOthersOfThePool()
{
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int threads = pool.maxThreadCount();
    pool.setMaxThreadCount(1);
    QSemaphore goOn;
    pool.start([&goOn] { goOn.acquire(); });
    QByteArrayList turns;
    pool.start([&turns] { turns.append("before"); });
    ThreadPool::instance()->start(
        [&turns] {
            turns.append("job");
            return true;
        },
        [](bool) {});
    pool.start([&turns] { turns.append("behind"); });
    goOn.release();
    QVERIFY(pool.waitForDone());
    pool.setMaxThreadCount(threads);
    QCOMPARE(turns, (QByteArrayList{"before", "job", "behind"}));
}

void TestThreadPool::processWithoutAnEventLoop_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::newRow(QuitFirst) << QByteArray("job done");
    // The thread that gets the result is the one that the job runs on, so nothing has to be posted.
    QTest::newRow(OnThePool) << QByteArray("job done result delivered");
}

void TestThreadPool::processWithoutAnEventLoop()
{
    QFETCH(QByteArray, output);
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(QTest::currentDataTag())});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardOutput().simplified(), output);
}

int main(int argc, char** argv)
{
    if (argc == 2 && (qstrcmp(argv[1], QuitFirst) == 0 || qstrcmp(argv[1], OnThePool) == 0))
        return runWithoutAnEventLoop(argc, argv);
    QCoreApplication application(argc, argv);
    TestThreadPool test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_threadpool.moc"
