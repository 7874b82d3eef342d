#include "web/webserver.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkReply>
#include <QPointer>
#include <QUrl>

namespace {

//! Processes the thread's events and returns whether the reply finished in time. Checks the deadline first: a
//! reply that finishes in the same pass of the event loop as the deadline is late. Returns false if the reply
//! has been deleted, which happens when an event deletes the client.
bool finishes(const QPointer<QNetworkReply>& reply, int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    while (reply && !reply->isFinished()) {
        QCoreApplication::processEvents();
        if (timer.elapsed() >= timeoutMs)
            return false;
    }
    return reply;
}

bool isSuccess(const QJsonObject& reply)
{
    return reply.contains(QLatin1String("data")) && reply.contains(QLatin1String("code")) &&
           reply.value(QLatin1String("code")).toInt(-1) == 200;
}

QString failureText(const QNetworkReply& reply, bool inTime)
{
    if (!inTime)
        return QStringLiteral("request timeout");
    if (reply.error() != QNetworkReply::NoError)
        return reply.errorString();
    return QStringLiteral("unknown fatal");
}

} // namespace

CWebServer::CWebServer(QObject* parent) : QObject(parent) {}

CWebServer::~CWebServer() = default;

void CWebServer::setServerAddress(const QString& url)
{
    serverAddress = url;
}

bool CWebServer::findLatest(const QString& token, const QString& productId, const QString& version,
                            const QJsonObject& body, QJsonObject& reply, int timeoutMs)
{
    const QString path = QStringLiteral("/v1.0/service/sys/productVersion/findLatest"
                                        "?access_token=%1&productId=%2&productVersion=%3")
                             .arg(token, productId, version);
    return postJson(body, reply, QUrl(serverAddress + path), timeoutMs);
}

bool CWebServer::postJson(const QJsonObject& body, QJsonObject& reply, const QUrl& url, int timeoutMs)
{
    QNetworkRequest request(url);
    request.setRawHeader("Content-type", "application/json");
    if (!manager)
        manager.emplace();
    const QPointer<QNetworkReply> networkReply = manager->post(request, QJsonDocument(body).toJson());
    const bool inTime = finishes(networkReply, timeoutMs);
    if (!networkReply)
        return false;
    bool success = false;
    if (inTime && networkReply->error() == QNetworkReply::NoError) {
        reply = QJsonDocument::fromJson(networkReply->readAll()).object();
        success = isSuccess(reply);
    }
    if (reply.isEmpty())
        reply.insert(QStringLiteral("message"), failureText(*networkReply, inTime));
    // Deleting a late reply ends its request.
    networkReply->deleteLater();
    return success;
}
