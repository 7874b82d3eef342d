#pragma once

#include <QObject>
#include <QRunnable>

#include <functional>

namespace VCIM {

//! \brief A task in a thread pool. The pool runs it once and then deletes it.
class ThreadObject final : public QObject, public QRunnable
{
    Q_OBJECT

public:
    //! `task` must not be empty; otherwise run throws std::bad_function_call.
    explicit ThreadObject(const std::function<bool()>& task);

    //! Runs the task on the calling thread and emits its result. Does not catch exceptions of the task.
    void run() override;

Q_SIGNALS:
    void readyResult(bool);

private:
    std::function<bool()> m_task;
};

} // namespace VCIM
