#include "tests/support/messagelog.h"

#include <mutex>

namespace TestSupport {

namespace {

std::mutex entriesMutex;
QVector<MessageLog::Entry> recorded;

void record(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const std::lock_guard<std::mutex> lock(entriesMutex);
    recorded.append({type, text, QString::fromUtf8(context.file), QString::fromUtf8(context.category)});
}

} // namespace

MessageLog::MessageLog()
{
    clear();
    m_previous = qInstallMessageHandler(record);
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(m_previous);
}

QVector<MessageLog::Entry> MessageLog::entries() const
{
    const std::lock_guard<std::mutex> lock(entriesMutex);
    return recorded;
}

QStringList MessageLog::texts(QtMsgType type) const
{
    QStringList found;
    const QVector<Entry> all = entries();
    for (const Entry& entry : all) {
        if (entry.type == type)
            found.append(entry.text);
    }
    return found;
}

QStringList MessageLog::categories(const QString& text) const
{
    QStringList found;
    const QVector<Entry> all = entries();
    for (const Entry& entry : all) {
        if (entry.text.contains(text))
            found.append(entry.category);
    }
    found.removeDuplicates();
    return found;
}

void MessageLog::clear()
{
    const std::lock_guard<std::mutex> lock(entriesMutex);
    recorded.clear();
}

} // namespace TestSupport
