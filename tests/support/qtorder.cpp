//! \file
//! \brief For builds with ThreadSanitizer: reports the order that Qt creates between threads.
//!
//! Qt is not built with the sanitizer, and its mutexes and atomics do not use those of the system, so data
//! that passes through a queue of events would look like a race. The functions here replace Qt's functions
//! with the same names and report the two orders that the program relies on: everything before a signal or a
//! call is sent happens before an event of that kind is handled, and everything that a thread does happens
//! before a wait for the thread ends. Everything before a job of a thread pool is started happens before the
//! job.
//!
//! Senders and receivers are not distinguished, so a race between two events is not detected if it happens
//! between an unrelated sending and handling.

#include <QDeadlineTimer>
#include <QEvent>
#include <QMetaObject>
#include <QObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <dlfcn.h>

#define NELVO_BEFORE_QT __attribute__((visibility("default")))

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the sanitizer's and the compiler's.

extern "C" {
void __tsan_acquire(void* address);
void __tsan_release(void* address);
}

namespace {

char sent;
char handled;

//! \brief A job of a thread pool, with the report of its order.
class OrderedRunnable final : public QRunnable
{
public:
    explicit OrderedRunnable(QRunnable* job) : m_job(job) {}

    void run() override
    {
        __tsan_acquire(&sent);
        const bool isOwned = m_job->autoDelete();
        m_job->run();
        if (isOwned)
            delete m_job;
        __tsan_release(&handled);
    }

private:
    QRunnable* m_job;
};

template <typename Function>
Function* next(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

//! QMetaObject::activate, by which signals are emitted.
NELVO_BEFORE_QT void _ZN11QMetaObject8activateEP7QObjectPKS_iPPv(QObject* sender, const QMetaObject* meta,
                                                                 int signal, void** arguments)
{
    static auto* const activate =
        next<void(QObject*, const QMetaObject*, int, void**)>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&sent);
    activate(sender, meta, signal, arguments);
}

//! QMetaObject::invokeMethod, for functions and functors.
NELVO_BEFORE_QT bool
_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv(
    QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type, void* result)
{
    static auto* const invoke = next<bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    __tsan_release(&sent);
    return invoke(object, slot, type, result);
}

//! QObject::event, as this program's classes inherit it.
NELVO_BEFORE_QT bool _ZN7QObject5eventEP6QEvent(QObject* object, QEvent* event)
{
    static auto* const handle = next<bool(QObject*, QEvent*)>("_ZN7QObject5eventEP6QEvent");
    if (event->type() == QEvent::MetaCall)
        __tsan_acquire(&sent);
    const bool result = handle(object, event);
    __tsan_release(&handled);
    return result;
}

//! QThread::wait.
NELVO_BEFORE_QT bool _ZN7QThread4waitE14QDeadlineTimer(QThread* thread, QDeadlineTimer deadline)
{
    static auto* const wait = next<bool(QThread*, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool result = wait(thread, deadline);
    __tsan_acquire(&handled);
    return result;
}

//! The same with a time in milliseconds.
NELVO_BEFORE_QT bool _ZN7QThread4waitEm(QThread* thread, unsigned long milliseconds)
{
    static auto* const wait = next<bool(QThread*, unsigned long)>("_ZN7QThread4waitEm");
    const bool result = wait(thread, milliseconds);
    __tsan_acquire(&handled);
    return result;
}

//! QThreadPool::start, for jobs.
NELVO_BEFORE_QT void _ZN11QThreadPool5startEP9QRunnablei(QThreadPool* pool, QRunnable* job, int priority)
{
    static auto* const start =
        next<void(QThreadPool*, QRunnable*, int)>("_ZN11QThreadPool5startEP9QRunnablei");
    auto* const ordered = new OrderedRunnable(job);
    __tsan_release(&sent);
    start(pool, ordered, priority);
}

//! QThreadPool::waitForDone.
NELVO_BEFORE_QT bool _ZN11QThreadPool11waitForDoneEi(QThreadPool* pool, int milliseconds)
{
    static auto* const wait = next<bool(QThreadPool*, int)>("_ZN11QThreadPool11waitForDoneEi");
    const bool result = wait(pool, milliseconds);
    __tsan_acquire(&handled);
    return result;
}
}

// NOLINTEND(bugprone-reserved-identifier)
