#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QString>

#include <functional>

class CCookiesJar;
class QEventLoop;
class QJsonArray;
class QJsonObject;
class QNetworkAccessManager;
class QNetworkReply;
class QObject;

//! \file
//! \brief Blocking REST calls.
//!
//! Each call returns when the network layer has finished the reply. There is no timeout. Meanwhile the call
//! processes all kinds of events of its thread: timers, QML handlers and user input run inside it and may
//! re-enter the caller. A call runs on its caller's thread.
//!
//! The URL is `baseUrl` followed directly by `path`, parsed in tolerant mode; no slash is added or removed. A
//! failure is returned: after a transport error or an HTTP status that is no success, a call logs the error
//! text of the reply as a warning and returns false.
//!
//! For an address with the scheme "file" a call returns false and writes nothing. Only a POST logs this, as
//! an unknown protocol.
//!
//! An object that starts a call passes itself as `owner`. Code that runs inside the call may delete the
//! owner, as a host's Shutdown does. The call then returns false at once and logs nothing, and its caller
//! must not access its own members any more. The request itself continues.
//!
//! Replies are never released: they remain children of their manager.

//! Adds headers to a request before it is sent; may be empty.
using RequestPreparer = std::function<void(QNetworkRequest&)>;
//! Receives the body of a successful reply and returns the result of the call.
using ReplyHandler = std::function<bool(QByteArray)>;

//! The network manager of the calling thread, with the shared cookie jar.
//!
//! The application's thread has a manager that exists until the process ends. Every other thread has its own
//! manager, which ends with the thread: Qt allows a manager on its own thread only. The `finished` signal of
//! the application's manager reports the replies of all managers, each on the thread of its reply.
QNetworkAccessManager* sharedNetworkManager();

//! The cookie jar of the process. Any thread; exists until the process ends.
CCookiesJar* sharedCookieJar();

//! Processes the events of the thread until `reply` has finished. Returns false as soon as `owner` has been
//! deleted, otherwise true.
bool waitForReply(const QNetworkReply* reply, const QObject* owner);

//! The same with `loop`. The end of the thread's event loops also ends `loop`: after a true result the reply
//! may be unfinished.
bool waitForReply(const QNetworkReply* reply, const QObject* owner, QEventLoop& loop);

//! A request with the standard headers that follows redirects. The caller sets the URL.
QNetworkRequest buildRequest();

//! GET. Without a `handler` the result is false even if the request succeeds.
bool httpGet(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const RequestPreparer& prepare, const ReplyHandler& handler, const QObject* owner = nullptr);

//! GET with a JSON object as body. If the body is no JSON, it is logged and the call returns false with
//! `result` unchanged; for any other JSON it returns true and an empty object.
bool httpGetJson(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                 const RequestPreparer& prepare, QJsonObject& result, const QObject* owner = nullptr);

//! GET with a JSON array as body; otherwise as httpGetJson.
bool httpGetJsonArray(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                      QJsonArray& result, const QObject* owner = nullptr);

//! POST of `body` as application/json. `handler` must not be empty; otherwise a successful reply throws
//! std::bad_function_call.
bool httpPost(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
              const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
              const QObject* owner = nullptr);

//! PUT of `body`; otherwise as httpPost.
bool httpPut(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
             const QObject* owner = nullptr);
