#include "clients.h"

#include "tests/support/startedservices.h"

#include <QSslCertificate>
#include <QTest>

using NelvoDevkit::Fault;
using NelvoDevkit::ServicesOptions;
using TestSupport::StartedServices;

namespace {

QSslConfiguration trusting(const QByteArray& pem)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({QSslCertificate(pem)});
    return configuration;
}

} // namespace

class TestServicesHttps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void certificateIsForLoopback();
    void clientThatTrustsIt();
    void clientThatDoesNotTrustIt();
    void clientThatSpeaksHttp();
    void faultsStrike();
    void stopEndsHandshakes();
    void withoutHttpsThereIsNoCertificate();

private:
    std::unique_ptr<StartedServices> m_services;
};

void TestServicesHttps::initTestCase()
{
    QVERIFY2(QSslSocket::supportsSsl(), "these tests need Qt's OpenSSL backend");
}

void TestServicesHttps::init()
{
    ServicesOptions options;
    options.https = true;
    m_services = std::make_unique<StartedServices>(options);
}

void TestServicesHttps::cleanup()
{
    m_services.reset();
}

void TestServicesHttps::certificateIsForLoopback()
{
    const QSslCertificate certificate(m_services->certificatePem());
    QVERIFY(!certificate.isNull());
    QVERIFY(certificate.isSelfSigned());
    const auto names = certificate.subjectAlternativeNames();
    QVERIFY(names.contains(QSsl::IpAddressEntry, "127.0.0.1"));
    QVERIFY(names.contains(QSsl::DnsEntry, "localhost"));
    const QDateTime now = QDateTime::currentDateTime();
    QVERIFY(certificate.effectiveDate() < now && now < certificate.expiryDate());
}

void TestServicesHttps::clientThatTrustsIt()
{
    QVERIFY(m_services->signInUrl().startsWith("https://127.0.0.1:"));
    QVERIFY(m_services->editorUrl().startsWith("https://127.0.0.1:"));
    QVERIFY(m_services->controlUrl().startsWith("http://127.0.0.1:"));
    Client client;
    client.setSslConfiguration(trusting(m_services->certificatePem()));
    const Answer page = client.signIn(m_services->signInUrl(), "zhangwei", "123456");
    QCOMPARE(page.error, QNetworkReply::NoError);
    QCOMPARE(page.url.path(), QString("/login/success"));
    QCOMPARE(client.get(m_services->editorUrl() + "/org/heartbeat").status, 200);
    QCOMPARE(client.get(m_services->controlUrl() + "/").status, 200);
}

void TestServicesHttps::clientThatDoesNotTrustIt()
{
    QCOMPARE(Client().get(m_services->signInUrl() + "/login").error, QNetworkReply::SslHandshakeFailedError);

    ServicesOptions options;
    options.https = true;
    const StartedServices other(options);
    Client client;
    client.setSslConfiguration(trusting(other.certificatePem()));
    QCOMPARE(client.get(m_services->signInUrl() + "/login").error, QNetworkReply::SslHandshakeFailedError);
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServicesHttps::clientThatSpeaksHttp()
{
    RawConnection raw(m_services->signInUrl());
    raw.send("GET /login HTTP/1.1\r\nHost: h\r\n\r\n");
    raw.readToEnd();
    QVERIFY(!raw.isConnected());
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServicesHttps::faultsStrike()
{
    const QString heartbeat = m_services->editorUrl() + "/org/heartbeat";
    Client client;
    client.setSslConfiguration(trusting(m_services->certificatePem()));
    m_services->addFault({Fault::CutBody, {}, {}, 0, false});
    // A body that ends too early may be an error for Qt or not: this is a race in its network thread.
    QCOMPARE(client.get(heartbeat).body, QByteArray(R"({"code":0,"data":{}})").left(10));
    m_services->clearFaults();

    m_services->addFault({Fault::Stall, {}, {}, 0, false});
    m_services->log().clear();
    QNetworkReply* reply = client.start("GET", heartbeat);
    QTRY_COMPARE_WITH_TIMEOUT(m_services->log().requests().size(), 1, Patience);
    m_services->clearFaults();
    QCOMPARE(Client::finish(reply).status, 200);
}

void TestServicesHttps::stopEndsHandshakes()
{
    RawConnection silent(m_services->signInUrl());
    QVERIFY(silent.isConnected());
    m_services->stop();
    silent.readToEnd();
    QVERIFY(!silent.isConnected());
}

void TestServicesHttps::withoutHttpsThereIsNoCertificate()
{
    QVERIFY(StartedServices().certificatePem().isEmpty());
}

QTEST_GUILESS_MAIN(TestServicesHttps)
#include "test_services_https.moc"
