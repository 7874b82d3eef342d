#include "bench/measure.h"
#include "tests/support/startedservices.h"
#include "web/webclient.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrl>

#include <ctime>

//! Compares a blocking GET with the same request on a plain network manager and an event loop, and measures
//! the processor time of a wait.

namespace {

const auto Path = QStringLiteral("/figure");

double processorMilliseconds()
{
    return 1000.0 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

void plainGet(QNetworkAccessManager& manager, const QString& url)
{
    QNetworkRequest request = buildRequest();
    request.setUrl(QUrl(url + Path));
    QNetworkReply* reply = manager.get(request);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->readAll();
    reply->deleteLater();
}

bool blockingGet(const QString& url)
{
    return httpGet(sharedNetworkManager(), url, Path, {}, [](const QByteArray&) { return true; });
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    TestSupport::StartedServices services;
    services.setReply("GET", Path, {});
    const QString url = services.editorUrl();

    constexpr int rounds = 500;
    QNetworkAccessManager plain;
    QVector<double> own;
    QVector<double> other;
    for (int round = 0; round < rounds; ++round) {
        own.append(Bench::milliseconds([&url] { blockingGet(url); }));
        other.append(Bench::milliseconds([&plain, &url] { plainGet(plain, url); }));
    }
    Bench::printRatio("blocking GET / manager with an event loop", Bench::median(own), Bench::median(other),
                      "ms", 0);
    Bench::printFigure("  added in the median", Bench::median(own) - Bench::median(other), "ms", 1.5);

    constexpr int waitMilliseconds = 5000;
    services.addFault({NelvoDevkit::Fault::Delay, Path, {}, waitMilliseconds, true});
    const double processorBefore = processorMilliseconds();
    const double waited = Bench::milliseconds([&url] { blockingGet(url); });
    Bench::printFigure("  processor time while waiting 5 s",
                       100 * (processorMilliseconds() - processorBefore) / waited, "% of a core", 5);
    return 0;
}
