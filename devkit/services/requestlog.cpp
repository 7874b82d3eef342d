#include "services/requestlog.h"

namespace NelvoDevkit {

void RequestLog::append(const LoggedRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.append(request);
}

void RequestLog::append(const Exchange& exchange)
{
    const std::lock_guard lock(m_mutex);
    m_exchanges.append(exchange);
}

QVector<Exchange> RequestLog::exchanges() const
{
    const std::lock_guard lock(m_mutex);
    return m_exchanges;
}

QVector<LoggedRequest> RequestLog::requests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void RequestLog::clear()
{
    const std::lock_guard lock(m_mutex);
    m_requests.clear();
    m_exchanges.clear();
}

} // namespace NelvoDevkit
