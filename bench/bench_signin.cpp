#include "bench/measure.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"

#include <QGuiApplication>
#include <QProcess>

//! Compares a whole sign-in in the loaded library, from `login` to OnLoginSucceeded without the progress
//! page, with the delays of its requests, and with one curl process that sends the same requests.

namespace {

using NelvoDevkit::Exchange;
using TestSupport::StartedServices;

void signIn(const E2e::PluginHost& host, const QString& url)
{
    if (host.signIn(url, QStringLiteral("zhangwei")).sdkAddr.empty())
        qFatal("the session has no editor service");
}

//! Records the requests and replies of a sign-in. Afterwards the services send these replies to every client,
//! because curl cannot read the ticket from the form.
QVector<Exchange> recordSignIn(StartedServices& services, const E2e::PluginHost& host)
{
    signIn(host, services.signInUrl());
    const QVector<Exchange> calls = services.log().exchanges();
    for (const Exchange& call : calls)
        services.setReply(call.request.method, QString::fromLatin1(call.request.path()), call.reply);
    return calls;
}

QStringList curlArguments(const QVector<Exchange>& calls, const StartedServices& services)
{
    QStringList arguments;
    for (const Exchange& call : calls) {
        if (!arguments.isEmpty())
            arguments << QStringLiteral("--next");
        const bool isEditor = call.request.service == "editor";
        arguments << QStringLiteral("--silent") << QStringLiteral("--fail") << QStringLiteral("--cookie")
                  << QStringLiteral("a=b") << QStringLiteral("--output") << QStringLiteral("/dev/null")
                  << (isEditor ? services.editorUrl() : services.signInUrl()) +
                         QString::fromLatin1(call.request.target);
        if (call.request.method == "POST")
            arguments << QStringLiteral("--data") << QString::fromLatin1(call.request.body);
    }
    return arguments;
}

} // namespace

int main(int argc, char** argv)
{
    QGuiApplication application(argc, argv);
    NelvoDevkit::ServicesOptions options;
    options.keepsReplies = true;
    StartedServices services(options);
    const E2e::PluginHost host(services.signInUrl());
    const TestSupport::MessageLog log;
    const QString url = services.signInUrl();
    // Also warms up: the measured sign-ins find connections and caches.
    const QVector<Exchange> calls = recordSignIn(services, host);

    constexpr int delayMilliseconds = 20;
    constexpr int delayedRounds = 15;
    services.addFault({NelvoDevkit::Fault::Delay, {}, {}, delayMilliseconds, false});
    QVector<double> delayed;
    for (int round = 0; round < delayedRounds; ++round)
        delayed.append(Bench::milliseconds([&] { signIn(host, url); }));
    Bench::printRatio("sign-in, 20 ms a call / its delays", Bench::median(delayed),
                      delayMilliseconds * static_cast<double>(calls.size()), "ms", 1.15);

    services.clearFaults();
    constexpr int rounds = 30;
    const QStringList arguments = curlArguments(calls, services);
    QVector<double> own;
    QVector<double> curl;
    for (int round = 0; round < rounds; ++round) {
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
