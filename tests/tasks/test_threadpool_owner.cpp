#include "tasks/threadpool.h"

#include <QThread>
#include <QThreadPool>
#include <QtTest>

#include <chrono>
#include <future>

using VCIM::ThreadPool;

//! \brief The thread of the first call receives the results; here it is not the main thread.
class TestThreadPoolOwner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resultsGoToTheThreadOfTheFirstUser();
};

void TestThreadPoolOwner::resultsGoToTheThreadOfTheFirstUser()
{
    QThread first;
    QObject onFirst;
    onFirst.moveToThread(&first);
    first.start();
    QMetaObject::invokeMethod(
        &onFirst, [] { ThreadPool::instance(); }, Qt::BlockingQueuedConnection);
    QCOMPARE(ThreadPool::instance()->thread(), &first);

    std::promise<void> delivered;
    QThread* resultThread = nullptr;
    ThreadPool::instance()->start([] { return true; },
                                  [&](bool) {
                                      resultThread = QThread::currentThread();
                                      delivered.set_value();
                                  });
    // This thread needs no event loop.
    QVERIFY(delivered.get_future().wait_for(std::chrono::minutes(1)) == std::future_status::ready);
    QCOMPARE(resultThread, &first);
    QVERIFY(QThreadPool::globalInstance()->waitForDone());
    first.quit();
    QVERIFY(first.wait());
}

QTEST_GUILESS_MAIN(TestThreadPoolOwner)
#include "test_threadpool_owner.moc"
