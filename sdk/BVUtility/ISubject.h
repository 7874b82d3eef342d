#pragma once

#include <QMap>
#include <QSet>

#include <mutex>

namespace BVUTILITY {

//! \brief Keeps the observers of a subject. `T` is the observer interface; observers are not owned.
//!
//! Attach and Detach may be called from any thread. Notify takes no lock and walks the live containers,
//! so attaching or detaching while it runs, from another thread or from within an observer, is not
//! supported.
template <typename T>
class ISubject
{
public:
    ISubject() = default;
    virtual ~ISubject() = default;
    Q_DISABLE_COPY(ISubject)

    //! Adds an observer; adding one twice has no effect. A null pointer would be kept like any other
    //! and called by the next notification.
    void Attach(T* observer)
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_observers.contains(observer))
            return;
        m_byPriority[DefaultPriority].insert(observer);
        m_observers.insert(observer);
    }

    //! Removes an observer; one that is not attached is ignored.
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
    //! Calls `call(T&)` for each observer, by ascending priority and in hash order within one. An
    //! exception ends the walk and goes on to the caller.
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
