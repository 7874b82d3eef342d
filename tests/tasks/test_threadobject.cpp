#include "tasks/threadobject.h"

#include <QSignalSpy>
#include <QThread>
#include <QtTest>

#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

using VCIM::ThreadObject;

class TestThreadObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAnObjectAndARunnable();
    void hasOneSignal();
    void runTellsTheVerdict_data();
    void runTellsTheVerdict();
    void runsOnTheThreadOfItsCaller();
    void taskIsACopyThatGoesWithTheObject();
    void emptyTaskThrows();
    void exceptionOfTheTaskGoesThrough();
};

void TestThreadObject::isAnObjectAndARunnable()
{
    ThreadObject object([] { return true; });
    QVERIFY(!object.parent());
    QCOMPARE(object.qt_metacast("VCIM::ThreadObject"), static_cast<void*>(&object));
    QCOMPARE(object.qt_metacast("QRunnable"), static_cast<void*>(static_cast<QRunnable*>(&object)));
    QCOMPARE(object.qt_metacast("QThread"), nullptr);
}

void TestThreadObject::hasOneSignal()
{
    const QMetaObject& meta = ThreadObject::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), QByteArray("readyResult(bool)"));
}

void TestThreadObject::runTellsTheVerdict_data()
{
    QTest::addColumn<bool>("verdict");
    QTest::newRow("true") << true;
    QTest::newRow("false") << false;
}

void TestThreadObject::runTellsTheVerdict()
{
    QFETCH(bool, verdict);
    ThreadObject object([verdict] { return verdict; });
    QSignalSpy results(&object, &ThreadObject::readyResult);
    object.run();
    QCOMPARE(results, (QList<QVariantList>{{verdict}}));
}

void TestThreadObject::runsOnTheThreadOfItsCaller()
{
    QThread* ran = nullptr;
    ThreadObject object([&ran] {
        ran = QThread::currentThread();
        return true;
    });
    QThread* caller = nullptr;
    std::thread([&object, &caller] {
        caller = QThread::currentThread();
        object.run();
    }).join();
    QVERIFY(caller && caller != QThread::currentThread());
    QCOMPARE(ran, caller);
}

void TestThreadObject::taskIsACopyThatGoesWithTheObject()
{
    const auto token = std::make_shared<int>();
    std::function<bool()> task = [token] { return token != nullptr; };
    auto object = std::make_unique<ThreadObject>(task);
    task = nullptr;
    QCOMPARE(token.use_count(), 2L);
    object->run();
    object.reset();
    QCOMPARE(token.use_count(), 1L);
}

void TestThreadObject::emptyTaskThrows()
{
    ThreadObject object({});
    QSignalSpy results(&object, &ThreadObject::readyResult);
    QVERIFY_EXCEPTION_THROWN(object.run(), std::bad_function_call);
    QVERIFY(results.isEmpty());
}

void TestThreadObject::exceptionOfTheTaskGoesThrough()
{
    ThreadObject object([]() -> bool { throw std::runtime_error("job"); });
    QSignalSpy results(&object, &ThreadObject::readyResult);
    QVERIFY_EXCEPTION_THROWN(object.run(), std::runtime_error);
    QVERIFY(results.isEmpty());
}

QTEST_GUILESS_MAIN(TestThreadObject)
#include "test_threadobject.moc"
