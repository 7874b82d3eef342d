#pragma once

#include <QObject>

#include <functional>

namespace VCIM {

//! \brief Runs a blocking job off the GUI thread and brings its verdict back there.
//!
//! The jobs run on the threads of QThreadPool::globalInstance(); this object gives the verdicts their
//! thread, which is the one that first asks for it. That thread needs an event loop: a verdict waits until
//! the loop runs, and is never delivered in a process that quits before.
class ThreadPool final : public QObject
{
    Q_OBJECT

public:
    //! The one object. Made by the first call, on its thread; lives to the end of the process.
    static ThreadPool* instance();

    //! Starts `task` on a pool thread and returns at once. `onResult` gets what it returned, as an event of
    //! this object's thread. Both are copied, and neither may be empty. A started task can't be waited for
    //! or cancelled; several may end in any order.
    void start(const std::function<bool()>& task, const std::function<void(bool)>& onResult);

private:
    ThreadPool() = default;
};

} // namespace VCIM
