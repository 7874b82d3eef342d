#include "host/orderqueue.h"

#include <stdexcept>
#include <utility>

namespace NelvoDevkit {

QString OrderQueue::activity() const
{
    return m_orders.empty() ? QString() : m_orders.front().activity;
}

void OrderQueue::add(const QString& activity, std::function<void()> work)
{
    m_orders.push_back({activity, std::move(work)});
    if (m_orders.size() == 1)
        schedule();
    Q_EMIT changed();
}

void OrderQueue::schedule()
{
    QMetaObject::invokeMethod(this, &OrderQueue::doNext, Qt::QueuedConnection);
}

void OrderQueue::doNext()
{
    try {
        m_orders.front().work();
    } catch (const std::out_of_range& error) {
        Q_EMIT failed(activity(), QString::fromUtf8(error.what()));
    }
    m_orders.pop_front();
    if (!m_orders.empty())
        schedule();
    Q_EMIT changed();
}

} // namespace NelvoDevkit
