#pragma once

//! \file
//! \brief The observer list of the plug-in's managers.
//!
//! A host does not use this class directly: it calls the Attach and Detach operations of
//! NelvoSDK::ILoginActor, NelvoSDK::IMessageMgr and NelvoSDK::IPdsMgr, which the plug-in implements with this
//! class. The comments here document the guarantees of these operations.

#include <QList>
#include <QMap>
#include <QSet>

#include <mutex>
#include <utility>

//! \brief Classes that the editor and its plug-ins share.
namespace BVUTILITY {

//! \brief Base class of an object that has observers.
//!
//! Attach and Detach may be called on any thread and at any time, also inside an observer's call. An observer
//! that is detached during a notification is not called by it any more; an observer that is attached during a
//! notification is called from the next one on. The subject may be deleted inside a call of one of its
//! observers. If Detach runs on another thread than the notification, it may return while the observer is
//! still being called.
//! \tparam T the observer interface. Observers are not owned.
template <typename T>
class ISubject
{
public:
    //! Creates a subject without observers.
    ISubject() = default;
    //! Does not delete the observers. A running notification ends after its current call.
    virtual ~ISubject()
    {
        forEachWalk([](Walk& walk) {
            walk.subject = nullptr;
            walk.pending.clear();
        });
    }
    Q_DISABLE_COPY(ISubject)

    //! Adds an observer. Cannot fail.
    //! \param observer not owned and not null: null is not rejected, and the next notification would call it.
    //!   Adding an observer twice has no effect.
    void Attach(T* observer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_observers.contains(observer))
            return;
        m_byPriority[DefaultPriority].insert(observer);
        m_observers.insert(observer);
    }

    //! Removes an observer. Cannot fail.
    //! \param observer ignored if it is not attached.
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
    //! Calls each observer on the caller's thread, in ascending order of priority, and in hash order within a
    //! priority. The calls may delete the subject.
    //! \tparam Call callable with a `T&`.
    //! \param call called once for each observer. If it throws, the notification ends and its caller gets the
    //!   exception.
    template <typename Call>
    void Notify(Call&& call) const
    {
        Walk walk(*this);
        for (T* observer = nullptr; walk.takeNext(observer);)
            call(*observer);
    }

private:
    //! The observers that a running notification has yet to call. A walk is a local variable of Notify and
    //! not a member: the layout of the subject is fixed, and the subject may be deleted meanwhile.
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

    //! Calls `action` for each running notification of this subject.
    template <typename Action>
    void forEachWalk(Action&& action) const
    {
        const std::lock_guard<std::mutex> lock(s_walksMutex);
        for (Walk* walk = s_walks; walk; walk = walk->next) {
            if (walk->subject == this)
                action(*walk);
        }
    }

    //! The only priority in use: Attach takes none.
    static constexpr int DefaultPriority = 5;

    //! The running notifications of all subjects with this observer interface.
    inline static Walk* s_walks = nullptr;
    inline static std::mutex s_walksMutex;

    QSet<T*> m_observers;
    QMap<int, QSet<T*>> m_byPriority;
    mutable std::mutex m_mutex;
};

} // namespace BVUTILITY
