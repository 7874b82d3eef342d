#include <BVUtility/ISubject.h>

#include <QtTest>

#include <stdexcept>
#include <thread>
#include <vector>

namespace {

struct Observer {
    int calls = 0;
};

class Subject : public BVUTILITY::ISubject<Observer>
{
public:
    void notifyAll()
    {
        Notify([](Observer& observer) { ++observer.calls; });
    }
    int reached()
    {
        int count = 0;
        Notify([&count](Observer&) { ++count; });
        return count;
    }
};

} // namespace

class TestSubject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void attachedObserversAreCalled();
    void attachingTwiceReachesOnce();
    void detachingAStrayChangesNothing();
    void detachedObserverIsNotCalled();
    void notifyWithoutObserversReturns();
    void attachAgainAfterDetach();
    void anExceptionEndsTheWalk();
    void attachAndDetachFromManyThreads();
};

void TestSubject::attachedObserversAreCalled()
{
    Subject subject;
    Observer first;
    Observer second;
    subject.Attach(&first);
    subject.Attach(&second);
    subject.notifyAll();
    QCOMPARE(first.calls, 1);
    QCOMPARE(second.calls, 1);
}

void TestSubject::attachingTwiceReachesOnce()
{
    Subject subject;
    Observer observer;
    subject.Attach(&observer);
    subject.Attach(&observer);
    subject.notifyAll();
    QCOMPARE(observer.calls, 1);
    subject.Detach(&observer);
    subject.notifyAll();
    QCOMPARE(observer.calls, 1);
}

void TestSubject::detachingAStrayChangesNothing()
{
    Subject subject;
    Observer attached;
    Observer stray;
    subject.Detach(&stray);
    subject.Attach(&attached);
    subject.Detach(&stray);
    subject.notifyAll();
    QCOMPARE(attached.calls, 1);
    QCOMPARE(stray.calls, 0);
}

void TestSubject::detachedObserverIsNotCalled()
{
    Subject subject;
    Observer stays;
    Observer leaves;
    subject.Attach(&stays);
    subject.Attach(&leaves);
    subject.Detach(&leaves);
    subject.notifyAll();
    QCOMPARE(stays.calls, 1);
    QCOMPARE(leaves.calls, 0);
}

void TestSubject::notifyWithoutObserversReturns()
{
    Subject subject;
    QCOMPARE(subject.reached(), 0);
    Observer observer;
    subject.Attach(&observer);
    subject.Detach(&observer);
    QCOMPARE(subject.reached(), 0);
}

void TestSubject::attachAgainAfterDetach()
{
    Subject subject;
    Observer observer;
    subject.Attach(&observer);
    subject.Detach(&observer);
    subject.Attach(&observer);
    QCOMPARE(subject.reached(), 1);
}

void TestSubject::anExceptionEndsTheWalk()
{
    class Thrower : public BVUTILITY::ISubject<Observer>
    {
    public:
        void notifyAll(int& reached)
        {
            Notify([&reached](Observer&) {
                ++reached;
                throw std::runtime_error("observer");
            });
        }
    };
    Thrower subject;
    Observer first;
    Observer second;
    subject.Attach(&first);
    subject.Attach(&second);
    int reached = 0;
    QVERIFY_EXCEPTION_THROWN(subject.notifyAll(reached), std::runtime_error);
    QCOMPARE(reached, 1);
}

void TestSubject::attachAndDetachFromManyThreads()
{
    constexpr std::size_t ThreadCount = 8;
    constexpr std::size_t PerThread = 500;
    Subject subject;
    std::vector<Observer> observers(ThreadCount * PerThread);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < ThreadCount; ++thread) {
        threads.emplace_back([&subject, &observers, thread] {
            for (std::size_t i = 0; i < PerThread; ++i) {
                Observer* observer = &observers[thread * PerThread + i];
                subject.Attach(observer);
                if (i % 2 == 0)
                    subject.Detach(observer);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(subject.reached(), int(ThreadCount * PerThread / 2));
}

QTEST_APPLESS_MAIN(TestSubject)
#include "test_subject.moc"
