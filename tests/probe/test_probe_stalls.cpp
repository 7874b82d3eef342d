#include "tests/probe/proberun.h"
#include "tests/support/startedservices.h"

#include <QJsonArray>
#include <QtTest>

using NelvoDevkit::Fault;

namespace {

//! For each walk. Enough to come to its last step on a machine that has much else to do.
const auto Seconds = QStringLiteral("5");

} // namespace

//! nelvo-probe and a server that accepts a request and never answers it, at each step.
class TestProbeStalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void stalledServerEndsWithTheTimeout_data();
    void stalledServerEndsWithTheTimeout();
    void stalledQuestionOfItsOwnEndsToo();

private:
    TestSupport::StartedServices m_services;
};

void TestProbeStalls::cleanup()
{
    m_services.clearFaults();
}

void TestProbeStalls::stalledServerEndsWithTheTimeout_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QString>("step");
    const auto row = [](const char* step, const char* method, const char* path) {
        QTest::newRow(step) << QString::fromLatin1(path) << QByteArray(method) << QString::fromLatin1(step);
    };
    row("sign-in-form", "GET", "/login");
    row("sign-in", "POST", "/login");
    row("enterprises", "GET", "/rs/casLogin/listCompany");
    row("binding", "POST", "/rs/casLogin/casLogin");
    row("addresses", "GET", "/rs/casLogin/serverUrl");
    row("token", "GET", "/rs/cim/nelvo/client_token");
    row("heartbeat", "GET", "/org/heartbeat");
    row("organisation", "GET", "/org/tree");
    row("projects", "GET", "/scene/project");
    row("models", "GET", "/bim/relation/");
    row("drawings", "GET", "/bim/relation/dwg");
    row("updates", "POST", "/v1.0/service/sys/productVersion/findLatest");
    row("sign-out", "GET", "/rs/casLogin/logout");
}

void TestProbeStalls::stalledServerEndsWithTheTimeout()
{
    QFETCH(QString, path);
    QFETCH(QByteArray, method);
    QFETCH(QString, step);
    m_services.addFault({Fault::Stall, path, method, 0, false});
    const ProbeRun run =
        ProbeRun::withJson(m_services.signInUrl(), QStringLiteral("lina"),
                           {"--update-url", m_services.updateUrl(), "--product", "nelvo-editor",
                            "--update-token", m_services.updates().token(), "--timeout", Seconds});
    QCOMPARE(run.status, int(ProbeRun::Wrong));
    QCOMPARE(run.verdict(step), QStringLiteral("wrong"));
    QVERIFY2(run.words(step).startsWith("no answer when the " + Seconds + " s of this walk were over"),
             qPrintable(run.words(step)));

    // What came before it is well, and nothing comes after it.
    QString verdict = QStringLiteral("well");
    const QJsonArray steps = run.json()["steps"].toArray();
    for (const QJsonValue found : steps) {
        if (found["step"].toString() == step)
            verdict = QStringLiteral("not reached");
        else
            QCOMPARE(found["verdict"].toString(), verdict);
    }
}

//! The form is read once by the plug-in; asked for directly, it never comes.
void TestProbeStalls::stalledQuestionOfItsOwnEndsToo()
{
    m_services.addFault({Fault::NotJson, QStringLiteral("/rs/casLogin/listCompany"), {}, 0, false});
    m_services.addFault({Fault::Delay, QStringLiteral("/login"), "GET", 0, true});
    m_services.addFault({Fault::Stall, QStringLiteral("/login"), "GET", 0, false});
    const ProbeRun run =
        ProbeRun::withJson(m_services.signInUrl(), QStringLiteral("lina"), {"--timeout", Seconds});
    QCOMPARE(run.status, int(ProbeRun::Wrong));
    QCOMPARE(run.verdict(QStringLiteral("enterprises")), QStringLiteral("wrong"));
    QVERIFY(
        run.words(QStringLiteral("enterprises")).contains(QStringLiteral("the enterprise list is no JSON")));
}

QTEST_GUILESS_MAIN(TestProbeStalls)
#include "test_probe_stalls.moc"
