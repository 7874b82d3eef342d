#pragma once

//! \file
//! \brief What keeps the observers of the plug-in's managers.

#include <QList>
#include <QMap>
#include <QSet>

#include <mutex>
#include <utility>

//! \brief What the editor and its plug-ins share.
namespace BVUTILITY {

//! \brief Keeps the observers of a subject.
//!
//! Attach and Detach may be called from any thread and at any time, also from within an observer's call. An
//! observer that is detached during a notification is not called by it any more; one that is attached during
//! a notification is called from the next one on. The subject itself may be deleted within a call of its own.
//! A Detach on another thread than the notification's may return while the observer's call is still running.
//! \tparam T the observer interface. Observers are not owned.
template <typename T>
class ISubject
{
public:
    //! A subject without observers.
    ISubject() = default;
    //! Forgets the observers and leaves them as they are. A notification that is running ends with the call
    //! that it is in.
    virtual ~ISubject()
    {
        forEachWalk([](Walk& walk) {
            walk.subject = nullptr;
            walk.pending.clear();
        });
    }
    Q_DISABLE_COPY(ISubject)

    //! Adds an observer. Cannot fail.
    //! \param observer not owned; one that is attached already stays attached once. A null pointer would be
    //!   kept like any other, and the next notification would call it.
    void Attach(T* observer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_observers.contains(observer))
            return;
        m_byPriority[DefaultPriority].insert(observer);
        m_observers.insert(observer);
    }

    //! Removes an observer. Cannot fail.
    //! \param observer one that is not attached is ignored.
    void Detach(T* observer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_observers.remove(observer))
            return;
        for (QSet<T*>& group : m_byPriority) {
            if (group.remove(observer))
                break;
        }
        forEachWalk([observer](Walk& walk) { walk.pending.removeOne(observer); });
    }

protected:
    //! Calls each observer on the caller's thread, by ascending priority and in hash order within one. After
    //! the calls the subject may be gone.
    //! \tparam Call what can be called with a `T&`.
    //! \param call the call for one observer. An exception that leaves it ends the walk and goes on to the
    //!   caller.
    template <typename Call>
    void Notify(Call&& call) const
    {
        Walk walk(*this);
        for (T* observer = nullptr; walk.takeNext(observer);)
            call(*observer);
    }

private:
    //! A notification that is running: the observers that it has still to call. It lives on the stack of the
    //! notification and outside of the subject, whose layout is fixed and which may be deleted meanwhile.
    struct Walk {
        explicit Walk(const ISubject& notifier) : subject(&notifier)
        {
            const std::lock_guard<std::mutex> lock(notifier.m_mutex);
            for (const QSet<T*>& group : notifier.m_byPriority) {
                for (T* observer : group)
                    pending.append(observer);
            }
            const std::lock_guard<std::mutex> walksLock(s_walksMutex);
            next = std::exchange(s_walks, this);
        }
        ~Walk()
        {
            const std::lock_guard<std::mutex> lock(s_walksMutex);
            Walk** link = &s_walks;
            while (*link != this)
                link = &(*link)->next;
            *link = next;
        }
        Q_DISABLE_COPY(Walk)

        bool takeNext(T*& observer)
        {
            const std::lock_guard<std::mutex> lock(s_walksMutex);
            if (pending.isEmpty())
                return false;
            observer = pending.takeFirst();
            return true;
        }

        const ISubject* subject;
        QList<T*> pending;
        Walk* next = nullptr;
    };

    //! Does something with each notification of this subject that is running.
    template <typename Action>
    void forEachWalk(Action&& action) const
    {
        const std::lock_guard<std::mutex> lock(s_walksMutex);
        for (Walk* walk = s_walks; walk; walk = walk->next) {
            if (walk->subject == this)
                action(*walk);
        }
    }

    //! Callers cannot choose a priority, so this is the only one there is.
    static constexpr int DefaultPriority = 5;

    //! The running notifications of all subjects of this kind.
    inline static Walk* s_walks = nullptr;
    inline static std::mutex s_walksMutex;

    QSet<T*> m_observers;
    QMap<int, QSet<T*>> m_byPriority;
    mutable std::mutex m_mutex;
};

} // namespace BVUTILITY
