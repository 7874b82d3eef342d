#include "services/requestlog.h"

#include <algorithm>

namespace NelvoDevkit {

QByteArray LoggedRequest::path() const
{
    return target.mid(0, target.indexOf('?'));
}

QByteArray LoggedRequest::header(const QByteArray& name) const
{
    const auto found = std::find_if(headers.begin(), headers.end(), [&name](const Header& header) {
        return header.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? QByteArray() : found->value;
}

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
