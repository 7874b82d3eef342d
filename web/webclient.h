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
//! Each call returns when the network layer has finished its reply, and only then: there is no timeout.
//! Meanwhile it pumps the events of its thread, all kinds of them, so timers, QML handlers and user input
//! run inside it and may come back into the caller. A call runs on its caller's thread.
//!
//! The URL is `baseUrl` followed directly by `path`, read in tolerant mode; no slash is added or removed.
//! Failures are results: a transport error or an HTTP status that is no success is logged as a warning
//! with the reply's error text and gives false.
//!
//! An address of the scheme "file" gives false, and nothing is written. Only a POST there is logged, as one
//! of an unknown protocol.
//!
//! A call that an object makes for itself passes that object as `owner`. What runs inside the call may
//! delete it, as a host's Shutdown does. The call then returns false at once and logs nothing, and its
//! caller must not touch its own members any more. The request itself goes on.
//!
//! Replies are never released: they stay children of their manager.

//! Adds headers to a request just before it goes out; may be empty.
using RequestPreparer = std::function<void(QNetworkRequest&)>;
//! Receives the body of a successful reply; its result becomes the result of the call.
using ReplyHandler = std::function<bool(QByteArray)>;

//! The network manager of the calling thread, with the shared cookie jar.
//!
//! The application's thread has one that lives to the end of the process. Any other thread gets one of its
//! own, which ends with the thread: Qt allows a manager to be used on its own thread only. The `finished`
//! signal of the application's manager reports the replies of all of them, each on the thread of its reply.
QNetworkAccessManager* sharedNetworkManager();

//! The process-wide cookie jar. May be used from any thread; lives to the end of the process.
CCookiesJar* sharedCookieJar();

//! Waits until `reply` has finished and pumps the events of the thread meanwhile. Returns false as soon as
//! `owner` has been deleted; without an owner always true.
bool waitForReply(const QNetworkReply* reply, const QObject* owner);

//! The same in `loop`, which anything that ends the thread's event loops ends as well: the reply may be
//! unfinished after a true result.
bool waitForReply(const QNetworkReply* reply, const QObject* owner, QEventLoop& loop);

//! A request with the standard headers, which follows redirects; the caller sets the URL.
QNetworkRequest buildRequest();

//! GET. With an empty `handler` the result is false even if the request succeeds.
bool httpGet(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const RequestPreparer& prepare, const ReplyHandler& handler, const QObject* owner = nullptr);

//! GET whose body is a JSON object. A body that is no JSON is logged and gives false, with `result`
//! untouched; JSON of another kind gives true and an empty object.
bool httpGetJson(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                 const RequestPreparer& prepare, QJsonObject& result, const QObject* owner = nullptr);

//! GET whose body is a JSON array; otherwise as httpGetJson.
bool httpGetJsonArray(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                      QJsonArray& result, const QObject* owner = nullptr);

//! POST of `body` as application/json. `handler` must not be empty, or a successful reply throws
//! std::bad_function_call.
bool httpPost(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
              const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
              const QObject* owner = nullptr);

//! PUT of `body`; otherwise as httpPost.
bool httpPut(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler,
             const QObject* owner = nullptr);
