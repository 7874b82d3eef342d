#include "host/logfilter.h"

#include <QClipboard>
#include <QGuiApplication>

namespace NelvoDevkit {

LogFilter::LogFilter(LogModel& log) : m_log(log)
{
    setSourceModel(&log);
}

void LogFilter::setShown(Shown shown)
{
    if (m_shown == shown)
        return;
    m_shown = shown;
    invalidateFilter();
    Q_EMIT shownChanged();
}

QString LogFilter::text(int first, int last) const
{
    QString lines;
    for (int row = qMax(first, 0); row <= qMin(last, rowCount() - 1); ++row)
        lines += m_log.entry(mapToSource(index(row, 0)).row()).toLine() + QLatin1Char('\n');
    return lines;
}

void LogFilter::copy(int first, int last) const
{
    QGuiApplication::clipboard()->setText(text(first, last));
}

bool LogFilter::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const
{
    const LogEntry::Kind kind = m_log.entry(row).kind;
    switch (m_shown) {
    case Everything:
        return true;
    case ObserverCalls:
        return kind == LogEntry::Kind::Observer;
    case Problems:
        return kind == LogEntry::Kind::Warning || kind == LogEntry::Kind::Critical;
    }
    Q_UNREACHABLE();
}

} // namespace NelvoDevkit
