#include "host/messagecapture.h"

#include "host/logmodel.h"

#include <atomic>
#include <cstring>
#include <mutex>

namespace NelvoDevkit {

namespace {

std::mutex targetMutex;
LogModel* target = nullptr; // guarded by targetMutex: another thread may log while the capture ends
std::atomic<QtMessageHandler> previousHandler{nullptr};

LogEntry::Kind kindOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return LogEntry::Kind::Debug;
    case QtInfoMsg:
        return LogEntry::Kind::Info;
    case QtWarningMsg:
        return LogEntry::Kind::Warning;
    case QtCriticalMsg:
    case QtFatalMsg:
        return LogEntry::Kind::Critical;
    }
    Q_UNREACHABLE();
}

QString originOf(const QMessageLogContext& context)
{
    if (context.file)
        return QStringLiteral("%1:%2").arg(QString::fromUtf8(context.file)).arg(context.line);
    if (context.category && std::strcmp(context.category, "default") != 0)
        return QString::fromUtf8(context.category);
    return {};
}

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    {
        const std::lock_guard<std::mutex> lock(targetMutex);
        if (target)
            target->append({kindOf(type), message, originOf(context)});
    }
    if (const QtMessageHandler previous = previousHandler)
        previous(type, context, message);
}

} // namespace

MessageCapture::MessageCapture(LogModel& log)
{
    const std::lock_guard<std::mutex> lock(targetMutex);
    target = &log;
    previousHandler = qInstallMessageHandler(handleMessage);
}

MessageCapture::~MessageCapture()
{
    const std::lock_guard<std::mutex> lock(targetMutex);
    qInstallMessageHandler(previousHandler);
    target = nullptr;
}

} // namespace NelvoDevkit
