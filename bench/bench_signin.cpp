#include "bench/measure.h"
#include "services/services.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"

#include <QGuiApplication>
#include <QMetaObject>
#include <QProcess>

//! A whole sign-in in the loaded library, from `login` to OnLoginSucceeded and without the page's closing
//! progress: beside the delays of its seven calls, and beside one curl process that sends the same requests.

namespace {

using NelvoDevkit::HttpReply;

struct Call {
    const char* method;
    const char* path;
    const char* contentType;
    QByteArray reply;
};

const QByteArray FormPage =
    "<!DOCTYPE html><html><head><title>CAS</title></head><body id=\"cas\"><div id=\"container\">"
    "<div id=\"content\"><div id=\"login\"><form><section class=\"row btn-row\">"
    "<input name=\"lt\" value=\"LT-1\"/><input name=\"execution\" value=\"e1s1\"/>"
    "<input name=\"_eventId\" value=\"submit\"/></section></form></div></div></div></body></html>";

//! The seven calls, answered the same for everybody: curl cannot read the ticket out of the form.
QVector<Call> signInCalls(const QString& editorUrl)
{
    return {
        {"GET", "/login", "text/html", FormPage},
        {"POST", "/login", "text/html", "<html><body id=\"cas\"/></html>"},
        {"GET", "/rs/casLogin/listCompany", "application/json",
         R"([{"enterpriseId": 1, "enterpriseName": "x"}])"},
        {"POST", "/rs/casLogin/casLogin", "application/json", "{}"},
        {"GET", "/rs/casLogin/serverUrl", "application/json",
         R"([{"serverName": "varlo-editor", "serverURL": ")" + editorUrl.toUtf8() + R"("}])"},
        {"GET", "/rs/cim/nelvo/client_token", "text/plain", "token"},
        {"GET", "/org/heartbeat", "application/json", "{}"},
    };
}

void signIn(const E2e::PluginHost& host, const QString& url)
{
    QObject* loginCtrl = host.loginCtrl();
    QString message;
    QMetaObject::invokeMethod(
        loginCtrl, "login", Q_RETURN_ARG(QString, message), Q_ARG(QString, QStringLiteral("user")),
        Q_ARG(QString, QStringLiteral("password")), Q_ARG(QString, url), Q_ARG(QString, QString()));
    if (!message.isEmpty())
        qFatal("sign-in failed: %s", qUtf8Printable(message));
    QMetaObject::invokeMethod(loginCtrl, "onLogin", Q_ARG(QString, url), Q_ARG(QString, QStringLiteral("1")),
                              Q_ARG(QString, QStringLiteral("x")));
    QMetaObject::invokeMethod(loginCtrl, "onShowHome");
    if (host.observer.sessions.constLast().sdkAddr.empty())
        qFatal("sign-in without an editor service");
}

QStringList curlArguments(const QVector<Call>& calls, const NelvoDevkit::Services& services)
{
    QStringList arguments;
    for (const Call& call : calls) {
        if (!arguments.isEmpty())
            arguments << QStringLiteral("--next");
        const bool editor = QByteArray(call.path) == "/org/heartbeat";
        arguments << QStringLiteral("--silent") << QStringLiteral("--fail") << QStringLiteral("--cookie")
                  << QStringLiteral("a=b") << QStringLiteral("--output") << QStringLiteral("/dev/null")
                  << (editor ? services.editorUrl() : services.signInUrl()) + QLatin1String(call.path);
        if (QByteArray(call.method) == "POST")
            arguments << QStringLiteral("--data") << QStringLiteral("epid=1&version=1.0.0");
    }
    return arguments;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    NelvoDevkit::Services services;
    if (!services.start())
        return 1;
    const QVector<Call> calls = signInCalls(services.editorUrl());
    for (const Call& call : calls)
        services.setReply(call.method, QLatin1String(call.path),
                          HttpReply{200, call.contentType, call.reply, {}});

    const E2e::PluginHost host(services.signInUrl());
    const TestSupport::MessageLog log;
    const QString url = services.signInUrl();
    signIn(host, url); // connections and caches are there from the second one on

    constexpr int DelayMilliseconds = 20;
    constexpr int DelayedRounds = 15;
    for (const Call& call : calls) {
        services.addFault(
            {NelvoDevkit::Fault::Delay, QLatin1String(call.path), call.method, DelayMilliseconds, false});
    }
    QVector<double> delayed;
    for (int round = 0; round < DelayedRounds; ++round)
        delayed.append(Bench::milliseconds([&] { signIn(host, url); }));
    Bench::printRatio("sign-in, 20 ms a call / its seven delays", Bench::median(delayed),
                      DelayMilliseconds * static_cast<double>(calls.size()), "ms", 1.25);

    services.clearFaults();
    constexpr int Rounds = 30;
    const QStringList arguments = curlArguments(calls, services);
    QVector<double> own;
    QVector<double> curl;
    for (int round = 0; round < Rounds; ++round) {
        own.append(Bench::milliseconds([&] { signIn(host, url); }));
        curl.append(Bench::milliseconds([&arguments] {
            if (QProcess::execute(QStringLiteral("curl"), arguments) != 0)
                qFatal("curl failed");
        }));
    }
    Bench::printRatio("sign-in, no delay / one curl process", Bench::median(own), Bench::median(curl), "ms",
                      0);
    return 0;
}
