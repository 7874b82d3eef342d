#include "web/webclient.h"

#include "web/cookiesjar.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QScopeGuard>
#include <QThread>
#include <QUrl>

#include <memory>

namespace {

QNetworkRequest requestFor(const QString& baseUrl, const QString& path)
{
    QNetworkRequest request = buildRequest();
    request.setUrl(QUrl(baseUrl + path, QUrl::TolerantMode));
    return request;
}

QNetworkRequest jsonRequestFor(const QString& baseUrl, const QString& path)
{
    QNetworkRequest request = requestFor(baseUrl, path);
    request.setRawHeader("Content-Type", "application/json");
    return request;
}

void prepareRequest(const RequestPreparer& prepare, QNetworkRequest& request)
{
    if (prepare)
        prepare(request);
}

//! Belongs to the application's thread, whichever thread asks for it first: that one may end, and requests of
//! others would then never finish.
class SharedNetworkManager final : public QNetworkAccessManager
{
public:
    SharedNetworkManager()
    {
        setCookieJar(sharedCookieJar());
        if (const QCoreApplication* application = QCoreApplication::instance())
            moveToThread(application->thread());
    }
};

//! Waits for the reply while the thread's events run; `handler` judges the body of a success. Neither the
//! reply nor the connection is released, which is meant: replies stay with the manager.
bool waitFor(QNetworkReply* reply, const ReplyHandler& handler)
{
    struct Call {
        bool waiting = true;
        bool result = false;
    };
    const auto call = std::make_shared<Call>();
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, call, handler] {
        // A reply that was finished from the start tells so when nobody waits for it any more, and what the
        // handler refers to is gone.
        if (!call->waiting)
            return;
        if (reply->error() != QNetworkReply::NoError) {
            qWarning().noquote() << reply->errorString();
            return;
        }
        call->result = handler(reply->readAll());
    });
    const auto end = qScopeGuard([&call] { call->waiting = false; });
    while (!reply->isFinished()) {
        QCoreApplication::processEvents();
        // Keeps the loop from spinning a core while the call is outstanding.
        if (!reply->isFinished())
            QThread::msleep(1);
    }
    return call->result;
}

//! A handler that parses the body and gives the document to `assign`.
template <typename Assign>
ReplyHandler jsonHandler(Assign assign)
{
    return [assign](const QByteArray& body) {
        QJsonParseError error;
        const QJsonDocument document = QJsonDocument::fromJson(body, &error);
        if (document.isNull()) {
            qWarning().noquote() << "parse json failed:" << error.errorString();
            return false;
        }
        assign(document);
        return true;
    };
}

} // namespace

QNetworkAccessManager* sharedNetworkManager()
{
    static SharedNetworkManager manager;
    manager.setCookieJar(sharedCookieJar());
    return &manager;
}

CCookiesJar* sharedCookieJar()
{
    // Attaching it makes it the manager's child, which is what deletes it.
    static auto* jar = new CCookiesJar;
    return jar;
}

QNetworkRequest buildRequest()
{
    QNetworkRequest request{QUrl()};
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("VarloSoft User Agent v1.0"));
    request.setRawHeader("Accept", "*/*");
    request.setRawHeader("Cache-control", "no-cache");
    request.setRawHeader("Pragma", "no-cache");
    // Set by hand, so nothing inflates a reply: the services are expected to answer with plain bodies.
    request.setRawHeader("Accept-Encoding", "deflate");
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    request.setAttribute(QNetworkRequest::FollowRedirectsAttribute, true);
    QT_WARNING_POP
    return request;
}

bool httpGet(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const RequestPreparer& prepare, const ReplyHandler& handler)
{
    QNetworkRequest request = requestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->get(request),
                   [handler](const QByteArray& body) { return handler && handler(body); });
}

bool httpGetJson(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                 const RequestPreparer& prepare, QJsonObject& result)
{
    QNetworkRequest request = requestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->get(request),
                   jsonHandler([&result](const QJsonDocument& document) { result = document.object(); }));
}

bool httpGetJsonArray(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                      QJsonArray& result)
{
    return waitFor(manager->get(requestFor(baseUrl, path)),
                   jsonHandler([&result](const QJsonDocument& document) { result = document.array(); }));
}

bool httpPost(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
              const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler)
{
    QNetworkRequest request = jsonRequestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->post(request, body), handler);
}

bool httpPut(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler)
{
    QNetworkRequest request = jsonRequestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->put(request, body), handler);
}
