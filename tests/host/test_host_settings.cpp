#include "host/hostsettings.h"

#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

using NelvoDevkit::HostSettings;
using TestSupport::row;

class TestHostSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptyObjectChangesNothing();
    void mistakes_data();
    void mistakes();
    void missingFile();
    void missingCertificateFile();
    void certificateIsTrustedAfterApply();
    void updateService();
    void codecIsTheSystemsAfterApply();
};

namespace {

//! A folder for settings, removed at the end of the test.
class Folder
{
public:
    QString path(const QString& name) const { return m_directory.filePath(name); }
    QString write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

private:
    const QTemporaryDir m_directory;
};

QNetworkReply::NetworkError get(const QUrl& url)
{
    QNetworkAccessManager manager;
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    QSignalSpy finished(reply.get(), &QNetworkReply::finished);
    if (!finished.wait(30000))
        return QNetworkReply::TimeoutError;
    return reply->error();
}

} // namespace

void TestHostSettings::emptyObjectChangesNothing()
{
    const Folder folder;
    QString error;
    const auto settings = HostSettings::load(folder.write(QStringLiteral("s.json"), "{}"), &error);
    QVERIFY2(settings, qPrintable(error));
    QVERIFY(settings->caCertificates.isEmpty());
    QVERIFY(settings->updateService.address.isEmpty());
    QTextCodec* const before = QTextCodec::codecForLocale();
    settings->apply();
    QCOMPARE(QTextCodec::codecForLocale(), before);
}

void TestHostSettings::mistakes_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    row("empty", QByteArray(), "at offset 0");
    row("no JSON", QByteArray("{\"caCertificate\": ca.pem}"), "at offset");
    row("no object", QByteArray("[]"), "not a JSON object");
    row("unknown key", QByteArray(R"({"caCertficate": "ca.pem"})"), "unknown key \"caCertficate\"");
    row("no text", QByteArray("{\"caCertificate\": 5}"), "\"caCertificate\" is not a text");
    row("no certificate", QByteArray(R"({"caCertificate": "s.json"})"), "no PEM certificate in");
    row("part of a service", QByteArray(R"({"updateAddress": "http://u", "updateToken": "t"})"),
        "\"updateProduct\" go together");
    row("token alone", QByteArray(R"({"updateToken": "t"})"), "go together");
    row("unknown codec", QByteArray(R"({"codec": "morse"})"), "there is no codec \"morse\"");
    row("empty codec", QByteArray(R"({"codec": ""})"), "there is no codec");
}

void TestHostSettings::mistakes()
{
    const Folder folder;
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QString given;
    QVERIFY(!HostSettings::load(folder.write(QStringLiteral("s.json"), content), &given));
    QVERIFY2(given.contains(error), qPrintable(given));
}

void TestHostSettings::missingFile()
{
    const Folder folder;
    QString error;
    QVERIFY(!HostSettings::load(folder.path(QStringLiteral("none.json")), &error));
    QVERIFY(!error.isEmpty());
}

void TestHostSettings::missingCertificateFile()
{
    const Folder folder;
    QString error;
    QVERIFY(!HostSettings::load(folder.write(QStringLiteral("s.json"), R"({"caCertificate": "none.pem"})"),
                                &error));
    QVERIFY2(error.contains(folder.path(QStringLiteral("none.pem"))), qPrintable(error));
}

void TestHostSettings::certificateIsTrustedAfterApply()
{
    const Folder folder;
    NelvoDevkit::ServicesOptions options;
    options.https = true;
    const TestSupport::StartedServices services(options);
    const QUrl url(services.signInUrl() + QStringLiteral("/login"));

    folder.write(QStringLiteral("ca.pem"), services.certificatePem());
    QString error;
    const auto settings =
        HostSettings::load(folder.write(QStringLiteral("s.json"), R"({"caCertificate": "ca.pem"})"), &error);
    QVERIFY2(settings, qPrintable(error));
    QCOMPARE(settings->caCertificates.size(), 1);

    QCOMPARE(get(url), QNetworkReply::SslHandshakeFailedError);
    settings->apply();
    QCOMPARE(get(url), QNetworkReply::NoError);
}

void TestHostSettings::updateService()
{
    const Folder folder;
    QString error;
    const auto settings = HostSettings::load(
        folder.write(QStringLiteral("s.json"),
                     R"({"updateAddress": "http://u", "updateToken": "t", "updateProduct": "p"})"),
        &error);
    QVERIFY2(settings, qPrintable(error));
    QCOMPARE(settings->updateService.address, QStringLiteral("http://u"));
    QCOMPARE(settings->updateService.token, QStringLiteral("t"));
    QCOMPARE(settings->updateService.product, QStringLiteral("p"));
}

void TestHostSettings::codecIsTheSystemsAfterApply()
{
    const Folder folder;
    QString error;
    const auto settings =
        HostSettings::load(folder.write(QStringLiteral("s.json"), R"({"codec": "GB18030"})"), &error);
    QVERIFY2(settings, qPrintable(error));
    QTextCodec* const before = QTextCodec::codecForLocale();
    settings->apply();
    const QByteArray local = QStringLiteral("中").toLocal8Bit();
    QTextCodec::setCodecForLocale(before);
    QCOMPARE(local, QByteArray("\xD6\xD0"));
}

QTEST_GUILESS_MAIN(TestHostSettings)
#include "test_host_settings.moc"
