#include "host/operationqueue.h"

#include <stdexcept>
#include <utility>

namespace NelvoDevkit {

QString OperationQueue::activity() const
{
    return m_operations.empty() ? QString() : m_operations.front().activity;
}

void OperationQueue::add(const QString& activity, std::function<void()> work)
{
    m_operations.push_back({activity, std::move(work)});
    if (m_operations.size() == 1)
        schedule();
    Q_EMIT changed();
}

void OperationQueue::schedule()
{
    QMetaObject::invokeMethod(this, &OperationQueue::doNext, Qt::QueuedConnection);
}

void OperationQueue::doNext()
{
    try {
        m_operations.front().work();
    } catch (const std::out_of_range& error) {
        Q_EMIT failed(activity(), QString::fromUtf8(error.what()));
    }
    m_operations.pop_front();
    if (!m_operations.empty())
        schedule();
    Q_EMIT changed();
}

} // namespace NelvoDevkit
