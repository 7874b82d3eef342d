#include "tasks/threadpool.h"

#include "tasks/threadobject.h"

#include <QThreadPool>

namespace VCIM {

ThreadPool* ThreadPool::instance()
{
    static auto* const pool = new ThreadPool;
    return pool;
}

void ThreadPool::start(const std::function<bool()>& task, const std::function<void(bool)>& onResult)
{
    auto* object = new ThreadObject(task);
    object->setAutoDelete(true);
    connect(object, &ThreadObject::readyResult, this, onResult, Qt::AutoConnection);
    QThreadPool::globalInstance()->start(object, 0);
}

} // namespace VCIM
