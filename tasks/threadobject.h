#pragma once

#include <QObject>
#include <QRunnable>

#include <functional>

namespace VCIM {

//! \brief A job on its way through a thread pool; made for one run, after which the pool deletes it.
class ThreadObject final : public QObject, public QRunnable
{
    Q_OBJECT

public:
    //! `task` must not be empty, or run throws std::bad_function_call.
    explicit ThreadObject(const std::function<bool()>& task);

    //! Does the job on the calling thread and tells its verdict. An exception of the job goes through.
    void run() override;

Q_SIGNALS:
    void readyResult(bool);

private:
    std::function<bool()> m_task;
};

} // namespace VCIM
