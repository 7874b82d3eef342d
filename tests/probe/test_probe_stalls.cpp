#include "tests/probe/proberun.h"
#include "tests/support/startedservices.h"

#include <QJsonArray>
#include <QSemaphore>
#include <QtTest>

#include <future>
#include <map>

using NelvoDevkit::Fault;

namespace {

//! The timeout of each walk: long enough to reach the last step on a busy machine.
const auto Seconds = QStringLiteral("10");
//! The number of walks that run at the same time, each with its own services.
constexpr int SideBySide = 7;

struct Stall {
    const char* step;
    const char* method;
    const char* path;
};

const Stall Stalls[] = {
    {"sign-in-form", "GET", "/login"},
    {"sign-in", "POST", "/login"},
    {"enterprises", "GET", "/rs/casLogin/listCompany"},
    {"binding", "POST", "/rs/casLogin/casLogin"},
    {"addresses", "GET", "/rs/casLogin/serverUrl"},
    {"token", "GET", "/rs/cim/nelvo/client_token"},
    {"heartbeat", "GET", "/org/heartbeat"},
    {"organisation", "GET", "/org/tree"},
    {"projects", "GET", "/scene/project"},
    {"models", "GET", "/bim/relation/"},
    {"drawings", "GET", "/bim/relation/dwg"},
    {"updates", "POST", "/v1.0/service/sys/productVersion/findLatest"},
    {"sign-out", "GET", "/rs/casLogin/logout"},
};

ProbeRun walkUnder(const Stall& stall)
{
    TestSupport::StartedServices services;
    services.addFault({Fault::Stall, QString::fromLatin1(stall.path), stall.method, 0, false});
    return ProbeRun::withJson(services.signInUrl(), QStringLiteral("lina"),
                              {"--update-url", services.updateUrl(), "--product", "nelvo-editor",
                               "--update-token", services.updates().token(), "--timeout", Seconds});
}

} // namespace

//! nelvo-probe and a server that accepts a request and never replies, at each step.
class TestProbeStalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void stalledServerEndsWithTheTimeout_data();
    void stalledServerEndsWithTheTimeout();
    void stalledQuestionOfItsOwnEndsToo();

private:
    QSemaphore m_places{SideBySide};
    std::map<QByteArray, std::future<ProbeRun>> m_walks; //!< the key is the step that stalls
};

void TestProbeStalls::initTestCase()
{
    for (const Stall& stall : Stalls) {
        m_walks[stall.step] = std::async(std::launch::async, [this, &stall] {
            m_places.acquire();
            const QSemaphoreReleaser place(m_places);
            return walkUnder(stall);
        });
    }
}

void TestProbeStalls::stalledServerEndsWithTheTimeout_data()
{
    QTest::addColumn<QString>("step");
    for (const Stall& stall : Stalls)
        QTest::newRow(stall.step) << QString::fromLatin1(stall.step);
}

void TestProbeStalls::stalledServerEndsWithTheTimeout()
{
    QFETCH(QString, step);
    const ProbeRun run = m_walks.at(step.toLatin1()).get();
    QCOMPARE(run.status, int(ProbeRun::Wrong));
    QCOMPARE(run.verdict(step), QStringLiteral("wrong"));
    QVERIFY2(run.words(step).startsWith("no answer when the " + Seconds + " s of this walk were over"),
             qPrintable(run.words(step)));

    // All earlier steps have passed, and the walk has not reached the later ones.
    QString verdict = QStringLiteral("well");
    const QJsonArray steps = run.json()["steps"].toArray();
    for (const QJsonValue found : steps) {
        if (found["step"].toString() == step)
            verdict = QStringLiteral("not reached");
        else
            QCOMPARE(found["verdict"].toString(), verdict);
    }
}

//! The plug-in receives the form, but the probe's own request for the form never gets a reply.
void TestProbeStalls::stalledQuestionOfItsOwnEndsToo()
{
    TestSupport::StartedServices services;
    services.addFault({Fault::NotJson, QStringLiteral("/rs/casLogin/listCompany"), {}, 0, false});
    services.addFault({Fault::Delay, QStringLiteral("/login"), "GET", 0, true});
    services.addFault({Fault::Stall, QStringLiteral("/login"), "GET", 0, false});
    const ProbeRun run =
        ProbeRun::withJson(services.signInUrl(), QStringLiteral("lina"), {"--timeout", Seconds});
    QCOMPARE(run.status, int(ProbeRun::Wrong));
    QCOMPARE(run.verdict(QStringLiteral("enterprises")), QStringLiteral("wrong"));
    QVERIFY(
        run.words(QStringLiteral("enterprises")).contains(QStringLiteral("the enterprise list is no JSON")));
}

QTEST_GUILESS_MAIN(TestProbeStalls)
#include "test_probe_stalls.moc"
