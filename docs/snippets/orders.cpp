#include "docs/snippets/orders.h"

#include <stdexcept>
#include <utility>

namespace Snippets {

//! [orders]
void Orders::add(std::function<void()> order)
{
    m_orders.push_back(std::move(order));
    if (m_orders.size() == 1)
        QMetaObject::invokeMethod(this, &Orders::doNext, Qt::QueuedConnection);
}

void Orders::doNext()
{
    try {
        m_orders.front()();
    } catch (const std::out_of_range& error) {
        Q_EMIT failed(QString::fromUtf8(error.what()));
    }
    m_orders.pop_front();
    if (!m_orders.empty())
        QMetaObject::invokeMethod(this, &Orders::doNext, Qt::QueuedConnection);
}
//! [orders]

} // namespace Snippets
