#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QtTest>

using NelvoDevkit::Fault;

//! The version check with a service that never replies.
class TestE2eUpdateTimeout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkGivesUpAfterThirtySeconds();
};

void TestE2eUpdateTimeout::checkGivesUpAfterThirtySeconds()
{
    TestSupport::StartedServices services;
    services.addFault(
        {Fault::Stall, QStringLiteral("/v1.0/service/sys/productVersion/findLatest"), "POST", 0, false});
    const E2e::PluginHost host(services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(host.window()));

    // The window reacts meanwhile.
    QTimer typist;
    connect(&typist, &QTimer::timeout, [&] {
        typist.stop();
        UserInput::fillField(host.window(), QStringLiteral("userNameBox"),
                             QStringLiteral("typed while it waits"));
    });
    typist.start(5000);

    const TestSupport::MessageLog log;
    QElapsedTimer timer;
    timer.start();
    E2e::checkVersion(services.updateUrl(), services.updates().token(), QStringLiteral("nelvo-editor"));
    QVERIFY2(timer.elapsed() >= 30000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY2(timer.elapsed() < 60000, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!typist.isActive());
    QVERIFY(log.entries().isEmpty());
    QTRY_COMPARE(E2e::shownPage(), QStringLiteral("validComp"));
    services.clearFaults();
}

E2E_MAIN(TestE2eUpdateTimeout)
#include "test_e2e_update_timeout.moc"
