#pragma once

//! \file
//! \brief What keeps the observers of the plug-in's managers.

#include <QMap>
#include <QSet>

#include <mutex>

//! \brief What the editor and its plug-ins share.
namespace BVUTILITY {

//! \brief Keeps the observers of a subject.
//!
//! Attach and Detach may be called from any thread. Notify takes no lock and walks the live containers,
//! so attaching or detaching while it runs, from another thread or from within an observer, is not
//! supported.
//! \tparam T the observer interface. Observers are not owned.
template <typename T>
class ISubject
{
public:
    //! A subject without observers.
    ISubject() = default;
    //! Forgets the observers and leaves them as they are.
    virtual ~ISubject() = default;
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
                return;
        }
    }

protected:
    //! Calls each observer on the caller's thread, by ascending priority and in hash order within one.
    //! \tparam Call what can be called with a `T&`.
    //! \param call the call for one observer. An exception that leaves it ends the walk and goes on to the
    //!   caller.
    template <typename Call>
    void Notify(Call&& call) const
    {
        for (const QSet<T*>& group : m_byPriority) {
            for (T* observer : group)
                call(*observer);
        }
    }

private:
    //! Callers cannot choose a priority, so this is the only one there is.
    static constexpr int DefaultPriority = 5;

    QSet<T*> m_observers;
    QMap<int, QSet<T*>> m_byPriority;
    std::mutex m_mutex;
};

} // namespace BVUTILITY
