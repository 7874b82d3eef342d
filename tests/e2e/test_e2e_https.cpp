#include "tests/e2e/loginform.h"
#include "tests/e2e/pluginhost.h"
#include "tests/support/accounts.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <QGuiApplication>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QtTest>

//! The services with HTTPS and a certificate that the system does not know.
class TestE2eHttps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void unknownCertificateIsRefused();
    void certificateThatTheHostTrustsPasses();

private:
    std::unique_ptr<TestSupport::StartedServices> m_services;
};

//! New services for each test: Qt stores trusted certificates with its connections.
void TestE2eHttps::init()
{
    NelvoDevkit::ServicesOptions options;
    options.https = true;
    m_services = std::make_unique<TestSupport::StartedServices>(options);
    QVERIFY(m_services->signInUrl().startsWith(QStringLiteral("https://")));
}

void TestE2eHttps::unknownCertificateIsRefused()
{
    const E2e::PluginHost host(m_services->signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(host.window()));
    TestSupport::MessageLog log;
    E2e::submitForm(host.window(), QStringLiteral("zhangwei"), QStringLiteral("123456"),
                    m_services->signInUrl());
    QTRY_VERIFY(E2e::shownError(host.window()).startsWith(QStringLiteral("SSL handshake failed")));
    QCOMPARE(host.observer.failures, 1);
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestE2eHttps::certificateThatTheHostTrustsPasses()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(QSslCertificate::fromData(m_services->certificatePem()));
    QSslConfiguration::setDefaultConfiguration(configuration);

    const E2e::PluginHost host(m_services->signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(host.window()));
    TestSupport::MessageLog log;
    E2e::submitForm(host.window(), QStringLiteral("zhangwei"),
                    TestSupport::passwordOf(QStringLiteral("zhangwei")), m_services->signInUrl());
    QTRY_COMPARE(host.observer.sessions.size(), 1);
    QCOMPARE(QString::fromStdWString(host.observer.sessions.constFirst().sdkAddr), m_services->editorUrl());
}

E2E_MAIN(TestE2eHttps)
#include "test_e2e_https.moc"
