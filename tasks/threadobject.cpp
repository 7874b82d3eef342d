#include "tasks/threadobject.h"

namespace VCIM {

ThreadObject::ThreadObject(const std::function<bool()>& task) : m_task(task) {}

void ThreadObject::run()
{
    Q_EMIT readyResult(m_task());
}

} // namespace VCIM
