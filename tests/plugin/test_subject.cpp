#include <BVUtility/ISubject.h>

#include <QtTest>

#include <atomic>
#include <functional>
#include <memory>
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
    //! Notifies all observers. Each call runs `happens` with the observer and the number of earlier calls.
    void notifyWith(const std::function<void(Observer&, int)>& happens)
    {
        int before = 0;
        Notify([&](Observer& observer) {
            ++observer.calls;
            happens(observer, before++);
        });
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
    void observerMayDetachItself();
    void observerMayDetachAndDeleteAnother();
    void oneAttachedDuringANotificationWaitsForTheNext();
    void oneDetachedAndAttachedAgainWaitsForTheNext();
    void subjectMayBeDeletedInACall();
    void notificationsNest();
    void otherSubjectsAreLeftAlone();
    void attachAndDetachFromManyThreads();
    void attachAndDetachDuringNotifications();
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

void TestSubject::observerMayDetachItself()
{
    Subject subject;
    Observer first;
    Observer second;
    subject.Attach(&first);
    subject.Attach(&second);
    subject.notifyWith([&](Observer& observer, int) { subject.Detach(&observer); });
    QCOMPARE(first.calls, 1);
    QCOMPARE(second.calls, 1);
    QCOMPARE(subject.reached(), 0);
}

void TestSubject::observerMayDetachAndDeleteAnother()
{
    Subject subject;
    std::vector<std::unique_ptr<Observer>> observers;
    for (int i = 0; i < 10; ++i) {
        observers.push_back(std::make_unique<Observer>());
        subject.Attach(observers.back().get());
    }
    int calls = 0;
    subject.notifyWith([&](Observer& called, int) {
        ++calls;
        for (auto& observer : observers) {
            if (observer.get() == &called)
                continue;
            subject.Detach(observer.get());
            observer.reset();
        }
    });
    QCOMPARE(calls, 1);
    QCOMPARE(subject.reached(), 1);
}

void TestSubject::oneAttachedDuringANotificationWaitsForTheNext()
{
    Subject subject;
    Observer first;
    std::vector<Observer> later(50); // enough that some would follow the first in the order of the calls
    subject.Attach(&first);
    subject.notifyWith([&](Observer&, int) {
        for (Observer& observer : later)
            subject.Attach(&observer);
    });
    for (const Observer& observer : later)
        QCOMPARE(observer.calls, 0);
    QCOMPARE(subject.reached(), 51);
}

void TestSubject::oneDetachedAndAttachedAgainWaitsForTheNext()
{
    Subject subject;
    std::vector<Observer> observers(10);
    for (Observer& observer : observers)
        subject.Attach(&observer);
    subject.notifyWith([&](Observer& called, int before) {
        if (before > 0)
            return;
        for (Observer& observer : observers) {
            if (&observer == &called)
                continue;
            subject.Detach(&observer);
            subject.Attach(&observer);
        }
    });
    int calls = 0;
    for (const Observer& observer : observers)
        calls += observer.calls;
    QCOMPARE(calls, 1);
    QCOMPARE(subject.reached(), 10);
}

void TestSubject::subjectMayBeDeletedInACall()
{
    auto subject = std::make_unique<Subject>();
    Observer first;
    Observer second;
    subject->Attach(&first);
    subject->Attach(&second);
    subject->notifyWith([&](Observer&, int) { subject.reset(); });
    QCOMPARE(first.calls + second.calls, 1);
}

void TestSubject::notificationsNest()
{
    Subject subject;
    Observer first;
    Observer second;
    subject.Attach(&first);
    subject.Attach(&second);
    subject.notifyWith([&](Observer&, int before) {
        if (before == 0) {
            subject.notifyAll();
            subject.Detach(&first);
            subject.Detach(&second);
        }
    });
    // The inner notification calls both. The outer one calls only the observer that started the inner one.
    QCOMPARE(first.calls + second.calls, 3);
}

void TestSubject::otherSubjectsAreLeftAlone()
{
    Subject subject;
    auto other = std::make_unique<Subject>();
    Observer first;
    Observer second;
    for (Observer* observer : {&first, &second}) {
        subject.Attach(observer);
        other->Attach(observer);
    }
    subject.notifyWith([&](Observer&, int) {
        if (!other)
            return;
        other->Detach(&first);
        other->Detach(&second);
        other.reset();
    });
    QCOMPARE(first.calls, 1);
    QCOMPARE(second.calls, 1);
}

void TestSubject::attachAndDetachFromManyThreads()
{
    constexpr std::size_t threadCount = 8;
    constexpr std::size_t perThread = 500;
    Subject subject;
    std::vector<Observer> observers(threadCount * perThread);
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&subject, &observers, thread] {
            for (std::size_t i = 0; i < perThread; ++i) {
                Observer* observer = &observers[thread * perThread + i];
                subject.Attach(observer);
                if (i % 2 == 0)
                    subject.Detach(observer);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(subject.reached(), int(threadCount * perThread / 2));
}

//! Each notification calls an observer that stays attached, even if calls attach and detach other observers.
void TestSubject::attachAndDetachDuringNotifications()
{
    constexpr int notifications = 2000;
    Subject subject;
    Observer stays;
    subject.Attach(&stays);
    std::atomic<bool> done = false;
    std::vector<Observer> guests(100);
    std::thread other([&] {
        while (!done) {
            for (Observer& guest : guests)
                subject.Attach(&guest);
            for (Observer& guest : guests)
                subject.Detach(&guest);
        }
    });
    int calls = 0;
    for (int i = 0; i < notifications; ++i)
        subject.notifyWith([&](Observer& observer, int) { calls += &observer == &stays ? 1 : 0; });
    done = true;
    other.join();
    QCOMPARE(calls, notifications);
    QCOMPARE(subject.reached(), 1);
}

QTEST_APPLESS_MAIN(TestSubject)
#include "test_subject.moc"
