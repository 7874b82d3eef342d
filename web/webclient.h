#pragma once

#include <QByteArray>
#include <QNetworkRequest>
#include <QString>

#include <functional>

class CCookiesJar;
class QJsonArray;
class QJsonObject;
class QNetworkAccessManager;

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
//! Replies are never released: they stay children of the manager to the end of the process.

//! Adds headers to a request just before it goes out; may be empty.
using RequestPreparer = std::function<void(QNetworkRequest&)>;
//! Receives the body of a successful reply; its result becomes the result of the call.
using ReplyHandler = std::function<bool(QByteArray)>;

//! The process-wide network manager with the shared cookie jar. Lives to the end of the process.
QNetworkAccessManager* sharedNetworkManager();

//! The process-wide cookie jar.
CCookiesJar* sharedCookieJar();

//! A request with the standard headers, which follows redirects; the caller sets the URL.
QNetworkRequest buildRequest();

//! GET. With an empty `handler` the result is false even if the request succeeds.
bool httpGet(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const RequestPreparer& prepare, const ReplyHandler& handler);

//! GET whose body is a JSON object. A body that is no JSON is logged and gives false, with `result`
//! untouched; JSON of another kind gives true and an empty object.
bool httpGetJson(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                 const RequestPreparer& prepare, QJsonObject& result);

//! GET whose body is a JSON array; otherwise as httpGetJson.
bool httpGetJsonArray(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
                      QJsonArray& result);

//! POST of `body` as application/json. `handler` must not be empty, or a successful reply throws
//! std::bad_function_call.
bool httpPost(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
              const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler);

//! PUT of `body`; otherwise as httpPost.
bool httpPut(QNetworkAccessManager* manager, const QString& baseUrl, const QString& path,
             const QByteArray& body, const RequestPreparer& prepare, const ReplyHandler& handler);
