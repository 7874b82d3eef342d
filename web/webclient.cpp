#include "web/webclient.h"

#include "web/cookiesjar.h"
#include "web/jsonfile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QScopeGuard>
#include <QThread>
#include <QThreadStorage>
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

//! Whether the network layer reads a file for this URL instead of sending a request: by its path or by a
//! search path.
bool isLocal(const QUrl& url)
{
    return url.isLocalFile() || !QDir::searchPaths(url.scheme()).isEmpty();
}

//! Moves an object to the application's thread, whichever thread created it.
template <typename Object>
Object* ofApplicationThread(Object* object)
{
    if (const QCoreApplication* application = QCoreApplication::instance())
        object->moveToThread(application->thread());
    return object;
}

//! The manager of the application's thread, for every calling thread. Never destroyed: when static
//! destructors run, Windows has already ended the manager's HTTP thread, and Qt would wait for it forever.
QNetworkAccessManager* applicationManager()
{
    static auto* const manager = ofApplicationThread(new QNetworkAccessManager);
    return manager;
}

//! The calling thread's own manager, which is destroyed when the thread ends.
QNetworkAccessManager* threadManager()
{
    static auto& managers = *new QThreadStorage<QNetworkAccessManager*>;
    if (!managers.hasLocalData()) {
        managers.setLocalData(new QNetworkAccessManager);
        // A direct connection, because a queued signal could outlive its reply.
        QObject::connect(managers.localData(), &QNetworkAccessManager::finished, applicationManager(),
                         &QNetworkAccessManager::finished, Qt::DirectConnection);
    }
    return managers.localData();
}

//! Processes events until the reply has finished. `handler` converts the body of a successful reply. Neither
//! the reply nor the connection is released. This is intentional: the manager keeps its replies.
bool waitFor(QNetworkReply* reply, const QObject* owner, const ReplyHandler& handler)
{
    struct Call {
        bool waiting = true;
        bool result = false;
    };
    const auto call = std::make_shared<Call>();
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, call, handler] {
        // A reply that was finished from the start emits its signal when this call has returned and the
        // objects that `handler` refers to are gone.
        if (!call->waiting)
            return;
        if (reply->error() != QNetworkReply::NoError) {
            qWarning().noquote() << reply->errorString();
            return;
        }
        call->result = handler(reply->readAll());
    });
    const auto end = qScopeGuard([&call] { call->waiting = false; });
    return waitForReply(reply, owner) && call->result;
}

//! A handler that parses the body and passes the document to `assign`.
template <typename Assign>
ReplyHandler jsonHandler(Assign assign)
{
    return [assign](const QByteArray& body) {
        const QJsonDocument document = parseJson(body, NELVO_HERE);
        if (document.isNull())
            return false;
        assign(document);
        return true;
    };
}

} // namespace

QNetworkAccessManager* sharedNetworkManager()
{
    QNetworkAccessManager* manager = applicationManager();
    if (manager->thread() != QThread::currentThread())
        manager = threadManager();
    manager->setCookieJar(sharedCookieJar());
    return manager;
}

CCookiesJar* sharedCookieJar()
{
    // The application's manager becomes the parent of the jar and is never destroyed.
    static auto* const jar = ofApplicationThread(new CCookiesJar);
    return jar;
}

bool waitForReply(const QNetworkReply* reply, const QObject* owner)
{
    const QPointer<const QObject> guard(owner);
    while (!reply->isFinished()) {
        QCoreApplication::processEvents();
        if (owner && !guard)
            return false;
        // Prevents the loop from using a whole core while the request runs.
        if (!reply->isFinished())
            QThread::msleep(1);
    }
    return true;
}

bool waitForReply(const QNetworkReply* reply, const QObject* owner, QEventLoop& loop)
{
    const QPointer<const QObject> guard(owner);
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (owner)
        QObject::connect(owner, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
    return !owner || guard;
}

QNetworkRequest buildRequest()
{
    QNetworkRequest request{QUrl()};
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("VarloSoft User Agent v1.0"));
    request.setRawHeader("Accept", "*/*");
    request.setRawHeader("Cache-control", "no-cache");
    request.setRawHeader("Pragma", "no-cache");
    // A header that the caller sets switches off decompression in Qt: the services must reply with
    // uncompressed bodies.
    request.setRawHeader("Accept-Encoding", "deflate");
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    request.setAttribute(QNetworkRequest::FollowRedirectsAttribute, true);
    QT_WARNING_POP
    return request;
}

bool httpGet(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const RequestPreparer& prepare, const ReplyHandler& handler, const QObject* owner)
{
    QNetworkRequest request = requestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->get(request), owner,
                   [handler](const QByteArray& body) { return handler && handler(body); });
}

bool httpGetJson(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                 const RequestPreparer& prepare, QJsonObject& result, const QObject* owner)
{
    QNetworkRequest request = requestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->get(request), owner,
                   jsonHandler([&result](const QJsonDocument& document) { result = document.object(); }));
}

bool httpGetJsonArray(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                      QJsonArray& result, const QObject* owner)
{
    return waitFor(manager->get(requestFor(baseUrl, path)), owner,
                   jsonHandler([&result](const QJsonDocument& document) { result = document.array(); }));
}

bool httpPost(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
              const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
              const QObject* owner)
{
    QNetworkRequest request = jsonRequestFor(baseUrl, path);
    prepareRequest(prepare, request);
    return waitFor(manager->post(request, body), owner, handler);
}

bool httpPut(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
             const QObject* owner)
{
    QNetworkRequest request = jsonRequestFor(baseUrl, path);
    prepareRequest(prepare, request);
    // The network layer would write the file. Returns false and logs nothing, as reading a file does.
    return !isLocal(request.url()) && waitFor(manager->put(request, body), owner, handler);
}
