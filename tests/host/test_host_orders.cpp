#include "host/orderqueue.h"

#include <QtTest>

#include <stdexcept>

using NelvoDevkit::OrderQueue;

class TestHostOrders : public QObject
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

void TestHostOrders::idleAtFirst()
{
    const OrderQueue queue;
    QVERIFY(!queue.isBusy());
    QCOMPARE(queue.activity(), QString());
}

void TestHostOrders::neverAtOnce()
{
    OrderQueue queue;
    bool done = false;
    queue.add(QStringLiteral("a"), [&done] { done = true; });
    QVERIFY(!done);
    QVERIFY(queue.isBusy());
    QTRY_VERIFY(done);
    QTRY_VERIFY(!queue.isBusy());
}

void TestHostOrders::oneAfterTheOther()
{
    OrderQueue queue;
    QStringList done;
    queue.add(QStringLiteral("a"), [&] {
        queue.add(QStringLiteral("c"), [&done] { done.append("c"); });
        done.append("a");
    });
    queue.add(QStringLiteral("b"), [&done] { done.append("b"); });
    QTRY_VERIFY(!queue.isBusy());
    QCOMPARE(done, (QStringList{"a", "b", "c"}));
}

//! As the plug-in does while it waits, an order lets events happen.
void TestHostOrders::noneWithinAnother()
{
    OrderQueue queue;
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

void TestHostOrders::activityOfTheOneAtWork()
{
    OrderQueue queue;
    QStringList seen;
    QSignalSpy changed(&queue, &OrderQueue::changed);
    queue.add(QStringLiteral("a"), [&] { seen.append(queue.activity()); });
    QCOMPARE(queue.activity(), QStringLiteral("a"));
    queue.add(QStringLiteral("b"), [&] { seen.append(queue.activity()); });
    QTRY_VERIFY(!queue.isBusy());
    QCOMPARE(seen, (QStringList{"a", "b"}));
    QCOMPARE(changed.size(), 4);
}

void TestHostOrders::exceptionIsToldAndTheNextFollows()
{
    OrderQueue queue;
    QSignalSpy failed(&queue, &OrderQueue::failed);
    bool done = false;
    queue.add(QStringLiteral("a"), [] { throw std::out_of_range("no such key"); });
    queue.add(QStringLiteral("b"), [&done] { done = true; });
    QTRY_VERIFY(done);
    QCOMPARE(failed.size(), 1);
    QCOMPARE(failed.first(), (QVariantList{"a", "no such key"}));
}

QTEST_GUILESS_MAIN(TestHostOrders)
#include "test_host_orders.moc"
