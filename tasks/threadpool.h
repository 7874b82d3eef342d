#pragma once

#include <QObject>

#include <functional>

namespace VCIM {

//! \brief Runs a blocking task outside of the GUI thread and delivers its result there.
//!
//! The tasks run on the threads of QThreadPool::globalInstance(). The results arrive on the thread of the
//! first call of instance. That thread needs an event loop: a result waits until the loop runs, and is lost
//! if the process quits first.
class ThreadPool final : public QObject
{
    Q_OBJECT

public:
    //! Returns the only object. The first call creates it on its own thread; it exists until the process
    //! ends.
    static ThreadPool* instance();

    //! Starts `task` on a pool thread and returns at once. `onResult` is called with the result of the task,
    //! as an event of this object's thread. Both are copied and must not be empty. A started task cannot be
    //! waited for or cancelled; tasks may end in any order.
    void start(const std::function<bool()>& task, const std::function<void(bool)>& onResult);

private:
    ThreadPool() = default;
};

} // namespace VCIM
