#include "host/logmodel.h"

#include <iterator>

namespace NelvoDevkit {

QString LogEntry::kindName() const
{
    switch (kind) {
    case Kind::Debug:
        return QStringLiteral("debug");
    case Kind::Info:
        return QStringLiteral("info");
    case Kind::Warning:
        return QStringLiteral("warning");
    case Kind::Critical:
        return QStringLiteral("critical");
    case Kind::Host:
        return QStringLiteral("host");
    case Kind::Observer:
        return QStringLiteral("observer");
    }
    Q_UNREACHABLE();
}

QString LogEntry::toLine() const
{
    QString line =
        QStringLiteral("%1 %2 ").arg(time.toString(Qt::ISODateWithMs), kindName().leftJustified(8));
    line += text;
    if (!origin.isEmpty())
        line += QStringLiteral(" [%1]").arg(origin);
    return line;
}

LogModel::LogModel(int capacity) : m_capacity(capacity) {}

void LogModel::append(LogEntry entry)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    const bool scheduled = !m_pending.empty();
    m_pending.push_back(std::move(entry));
    if (int(m_pending.size()) > m_capacity)
        m_pending.pop_front();
    if (!scheduled)
        QMetaObject::invokeMethod(this, &LogModel::takePending, Qt::QueuedConnection);
}

void LogModel::logAction(const QString& text)
{
    append({LogEntry::Kind::Host, text, {}});
}

void LogModel::logCall(const QString& text)
{
    append({LogEntry::Kind::Observer, text, {}});
}

void LogModel::logProblem(const QString& text)
{
    append({LogEntry::Kind::Warning, text, QStringLiteral("host")});
}

const LogEntry& LogModel::entry(int row) const
{
    return m_entries.at(std::size_t(row));
}

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_entries.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const LogEntry& entry = m_entries[std::size_t(index.row())];
    switch (role) {
    case TextRole:
        return entry.text;
    case KindRole:
        return entry.kindName();
    case TimeRole:
        return entry.time.toString(QStringLiteral("HH:mm:ss.zzz"));
    case OriginRole:
        return entry.origin;
    default:
        return {};
    }
}

QHash<int, QByteArray> LogModel::roleNames() const
{
    return {{TextRole, "text"}, {KindRole, "kind"}, {TimeRole, "time"}, {OriginRole, "origin"}};
}

void LogModel::takePending()
{
    std::deque<LogEntry> fresh;
    {
        // Views may log while rows are inserted or removed, so the lock ends first.
        const std::lock_guard<std::mutex> lock(m_mutex);
        fresh.swap(m_pending);
    }
    const int first = int(m_entries.size());
    beginInsertRows({}, first, first + int(fresh.size()) - 1);
    std::move(fresh.begin(), fresh.end(), std::back_inserter(m_entries));
    endInsertRows();

    const int surplus = int(m_entries.size()) - m_capacity;
    if (surplus <= 0)
        return;
    beginRemoveRows({}, 0, surplus - 1);
    m_entries.erase(m_entries.begin(), m_entries.begin() + surplus);
    endRemoveRows();
}

} // namespace NelvoDevkit
