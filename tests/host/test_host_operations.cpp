#include "host/operationqueue.h"

#include <QtTest>

#include <stdexcept>

using NelvoDevkit::OperationQueue;

class TestHostOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idleAtFirst();
    void neverAtOnce();
    void oneAfterTheOther();
    void noneWithinAnother();
    void activityOfTheOneAtWork();
    void exceptionIsToldAndTheNextFollows();
};

void TestHostOperations::idleAtFirst()
{
    const OperationQueue queue;
    QVERIFY(!queue.isBusy());
    QCOMPARE(queue.activity(), QString());
}

void TestHostOperations::neverAtOnce()
{
    OperationQueue queue;
    bool done = false;
    queue.add(QStringLiteral("a"), [&done] { done = true; });
    QVERIFY(!done);
    QVERIFY(queue.isBusy());
    QTRY_VERIFY(done);
    QTRY_VERIFY(!queue.isBusy());
}

void TestHostOperations::oneAfterTheOther()
{
    OperationQueue queue;
    QStringList done;
    queue.add(QStringLiteral("a"), [&] {
        queue.add(QStringLiteral("c"), [&done] { done.append("c"); });
        done.append("a");
    });
    queue.add(QStringLiteral("b"), [&done] { done.append("b"); });
    QTRY_VERIFY(!queue.isBusy());
    QCOMPARE(done, (QStringList{"a", "b", "c"}));
}

//! The operation processes events, like the plug-in while it waits.
void TestHostOperations::noneWithinAnother()
{
    OperationQueue queue;
    QStringList done;
    queue.add(QStringLiteral("a"), [&] {
        done.append("begin a");
        queue.add(QStringLiteral("b"), [&done] { done.append("b"); });
        for (int turn = 0; turn < 10; ++turn)
            QCoreApplication::processEvents();
        done.append("end a");
    });
    QTRY_VERIFY(!queue.isBusy());
    QCOMPARE(done, (QStringList{"begin a", "end a", "b"}));
}

void TestHostOperations::activityOfTheOneAtWork()
{
    OperationQueue queue;
    QStringList seen;
    QSignalSpy changed(&queue, &OperationQueue::changed);
    queue.add(QStringLiteral("a"), [&] { seen.append(queue.activity()); });
    QCOMPARE(queue.activity(), QStringLiteral("a"));
    queue.add(QStringLiteral("b"), [&] { seen.append(queue.activity()); });
    QTRY_VERIFY(!queue.isBusy());
    QCOMPARE(seen, (QStringList{"a", "b"}));
    QCOMPARE(changed.size(), 4);
}

void TestHostOperations::exceptionIsToldAndTheNextFollows()
{
    OperationQueue queue;
    QSignalSpy failed(&queue, &OperationQueue::failed);
    bool done = false;
    queue.add(QStringLiteral("a"), [] { throw std::out_of_range("no such key"); });
    queue.add(QStringLiteral("b"), [&done] { done = true; });
    QTRY_VERIFY(done);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first(), (QVariantList{"a", "no such key"}));
}

QTEST_GUILESS_MAIN(TestHostOperations)
#include "test_host_operations.moc"
