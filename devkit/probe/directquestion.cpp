#include "probe/directquestion.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSslError>
#include <QStringList>

#include <memory>

namespace NelvoDevkit {

namespace {

DirectAnswer answerOf(QNetworkReply& reply)
{
    QStringList certificateErrors;
    QEventLoop loop;
    QObject::connect(&reply, &QNetworkReply::sslErrors, &reply,
                     [&certificateErrors](const QList<QSslError>& errors) {
                         for (const QSslError& error : errors)
                             certificateErrors.append(error.errorString());
                     });
    QObject::connect(&reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    if (!reply.isFinished())
        loop.exec();
    DirectAnswer answer;
    if (reply.error() != QNetworkReply::NoError)
        answer.error = reply.errorString();
    answer.certificateError = certificateErrors.join(QStringLiteral("; "));
    answer.body = reply.readAll();
    answer.status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    return answer;
}

} // namespace

DirectAnswer askDirectly(const QUrl& url)
{
    QNetworkAccessManager manager;
    manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    return answerOf(*reply);
}

DirectAnswer askForHead(const QUrl& url)
{
    QNetworkAccessManager manager;
    manager.setRedirectPolicy(QNetworkRequest::NoLessSafeRedirectPolicy);
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QEventLoop loop;
    QObject::connect(reply.get(), &QNetworkReply::readyRead, &loop, &QEventLoop::quit);
    QObject::connect(reply.get(), &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    // Of an HTTP error, the body may arrive before the reply has failed.
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    const bool isThere = reply->error() == QNetworkReply::NoError && status < 400;
    DirectAnswer answer = isThere ? DirectAnswer{} : answerOf(*reply);
    answer.status = status;
    return answer;
}

DirectAnswer askDirectly(const QUrl& url, const QByteArray& json)
{
    QNetworkAccessManager manager;
    QNetworkRequest request(url);
    request.setRawHeader("Content-type", "application/json");
    const std::unique_ptr<QNetworkReply> reply(manager.post(request, json));
    return answerOf(*reply);
}

} // namespace NelvoDevkit
