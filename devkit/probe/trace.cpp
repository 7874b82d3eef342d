#include "probe/trace.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QNetworkAccessManager>
#include <QNetworkCookie>
#include <QNetworkCookieJar>
#include <QNetworkReply>

#include <algorithm>
#include <mutex>

namespace NelvoDevkit {

namespace {

//! Limits the text: the plug-in logs a whole list of models.
constexpr int MaxTextLength = 1000;

//! Qt's message handler is a plain function, so its target is static.
std::mutex mutex; // guards messageLog
QVector<LoggedMessage> messageLog;
QtMessageHandler previousHandler = nullptr;

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtFatalMsg)
        previousHandler(type, context, message);
    const std::lock_guard<std::mutex> lock(mutex);
    messageLog.append({type, message.left(MaxTextLength)});
}

int messageCount()
{
    const std::lock_guard<std::mutex> lock(mutex);
    return messageLog.size();
}

//! The cookies of the request, read before the reply sets its own.
QStringList cookiesOf(const QNetworkReply& reply)
{
    QStringList names;
    const QList<QNetworkCookie> cookies = reply.manager()->cookieJar()->cookiesForUrl(reply.request().url());
    for (const QNetworkCookie& cookie : cookies)
        names.append(QString::fromUtf8(cookie.name()));
    return names;
}

QByteArray methodOf(const QNetworkReply& reply)
{
    switch (reply.operation()) {
    case QNetworkAccessManager::GetOperation:
        return "GET";
    case QNetworkAccessManager::PostOperation:
        return "POST";
    default:
        return "other";
    }
}

} // namespace

bool TracedExchange::logged(const QString& text) const
{
    return std::any_of(messages.begin(), messages.end(),
                       [&text](const LoggedMessage& message) { return message.text == text; });
}

Trace::Trace()
{
    messageLog.clear();
    m_clock.start();
    previousHandler = qInstallMessageHandler(&handleMessage);
    QCoreApplication::instance()->installEventFilter(this);
}

Trace::~Trace()
{
    qInstallMessageHandler(previousHandler);
}

Trace::Mark Trace::mark() const
{
    const QMutexLocker locker(&m_mutex);
    return {m_requests.size(), messageCount(), m_clock.elapsed()};
}

QVector<TracedExchange> Trace::exchanges(const Mark& mark) const
{
    const QMutexLocker locker(&m_mutex);
    const QVector<LoggedMessage> logged = messages();
    QVector<TracedExchange> found;
    qint64 begin = mark.milliseconds;
    int firstMessage = mark.messages;
    for (int i = mark.requests; i < m_requests.size(); ++i) {
        const Request& request = m_requests.at(i);
        const bool isLast = i + 1 == m_requests.size();
        const int endOfMessages = isLast ? logged.size() : m_requests.at(i + 1).firstMessage;
        const qint64 end = request.exchange.isFinished ? request.end : m_clock.elapsed();
        TracedExchange exchange = request.exchange;
        exchange.milliseconds = end - begin;
        exchange.messages = logged.mid(firstMessage, endOfMessages - firstMessage);
        found.append(exchange);
        begin = end;
        firstMessage = endOfMessages;
    }
    return found;
}

QVector<LoggedMessage> Trace::messages() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return messageLog;
}

bool Trace::eventFilter(QObject* receiver, QEvent* event)
{
    auto* const reply = qobject_cast<QNetworkReply*>(receiver);
    // A reply that is still being constructed has no manager yet.
    if (reply && reply->manager()) {
        const QMutexLocker locker(&m_mutex);
        if (!m_replies.contains(reply)) {
            begin(*reply);
            // A reply of another thread is reported on that thread and may be deleted soon after.
            connect(reply->manager(), &QNetworkAccessManager::finished, this, &Trace::end,
                    static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::UniqueConnection));
        }
    }
    return QObject::eventFilter(receiver, event);
}

void Trace::begin(QNetworkReply& reply)
{
    m_replies.insert(&reply);
    TracedExchange exchange;
    exchange.method = methodOf(reply);
    exchange.url = reply.request().url();
    exchange.cookies = cookiesOf(reply);
    m_requests.append({&reply, messageCount(), 0, exchange});
    connect(&reply, &QObject::destroyed, this, &Trace::forget, Qt::DirectConnection);
}

void Trace::end(QNetworkReply* reply)
{
    const QMutexLocker locker(&m_mutex);
    if (!m_replies.contains(reply))
        begin(*reply);
    const auto request = std::find_if(m_requests.rbegin(), m_requests.rend(),
                                      [reply](const Request& known) { return known.reply == reply; });
    request->end = m_clock.elapsed();
    request->exchange.isFinished = true;
    request->exchange.answeredBy = reply->url();
    request->exchange.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError)
        request->exchange.error = reply->errorString();
}

void Trace::forget(const QObject* reply)
{
    const QMutexLocker locker(&m_mutex);
    m_replies.remove(reply);
}

} // namespace NelvoDevkit
