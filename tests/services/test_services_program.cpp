#include "clients.h"
#include "endprogram.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSslCertificate>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>

//! \brief Runs the program nelvo-services.
class TestServicesProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readyFileTellsTheAddresses();
    void outputTellsAddressesAndAccounts();
    void portsAreTaken();
    void httpsWritesTheCertificate();
    void seedIsUsed();
    void endComesOnRequest();
    void failureIsExplained_data();
    void failureIsExplained();
    void portThatIsTaken();

private:
    //! Starts the program and waits for its ready file.
    void start(QStringList arguments = {});
    QString file(const QString& name) const { return m_folder->filePath(name); }
    QString address(const QString& name) const { return m_ready.value(name).toString(); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_program;
    QJsonObject m_ready;
};

void TestServicesProgram::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_program = std::make_unique<QProcess>();
    m_program->setProgram(NELVO_SERVICES_PROGRAM);
    m_ready = {};
}

void TestServicesProgram::cleanup()
{
    m_program->kill();
    m_program->waitForFinished(Patience);
    m_program.reset();
    m_folder.reset();
}

void TestServicesProgram::start(QStringList arguments)
{
    QFile::remove(file("ready.json"));
    m_program->setArguments(arguments << "--ready-file" << file("ready.json"));
    m_program->start();
    const auto isReady = [this] {
        return QFile::exists(file("ready.json")) || m_program->state() == QProcess::NotRunning;
    };
    QVERIFY(QTest::qWaitFor(isReady, Patience));
    QFile ready(file("ready.json"));
    QVERIFY2(ready.open(QIODevice::ReadOnly), m_program->readAllStandardError().constData());
    m_ready = QJsonDocument::fromJson(ready.readAll()).object();
    QCOMPARE(m_ready.keys(),
             (QStringList{"certificate", "control", "editor", "package", "signIn", "update", "updateToken"}));
}

void TestServicesProgram::readyFileTellsTheAddresses()
{
    start();
    QCOMPARE(address("certificate"), QString());
    Client client;
    QCOMPARE(client.signIn(address("signIn"), "zhangwei", "123456").url.path(), QString("/login/success"));
    QCOMPARE(client.get(address("editor") + "/org/heartbeat").status, 200);
    const QString latest = "/v1.0/service/sys/productVersion/findLatest?productId=nelvo-editor"
                           "&productVersion=0.0.0&access_token=";
    QVERIFY(client.post(address("update") + latest + address("updateToken"), "{}").body.contains("1.0.1"));
    QCOMPARE(client.get(address("package") + "/packages/NelvoEditor-1.0.1.zip").status, 200);
    QCOMPARE(client.post(address("control") + "/faults?fault=status&value=503", {}).status, 200);
    QCOMPARE(client.get(address("editor") + "/org/heartbeat").status, 503);
}

void TestServicesProgram::outputTellsAddressesAndAccounts()
{
    start();
    QByteArray output;
    const auto isWhole = [this, &output] {
        output += m_program->readAllStandardOutput();
        return output.contains("everything else");
    };
    QVERIFY(QTest::qWaitFor(isWhole, Patience));
    for (const QString& text :
         {address("signIn"), address("editor"), address("update"), address("package"), address("control"),
          "access token " + address("updateToken"), QString("nelvo-editor  1.0.1  http"),
          QString("zhangwei  123456  1"), QString("müller  Größe-9é  1"), QString("陈晓明"),
          address("control") + "/faults?fault=status"}) {
        QVERIFY2(output.contains(text.toUtf8()), qPrintable(text));
    }
}

void TestServicesProgram::portsAreTaken()
{
    // Takes the ports of a first run, which are free after its end.
    start();
    const QJsonObject first = m_ready;
    m_program->kill();
    QVERIFY(m_program->waitForFinished(Patience));
    const auto port = [&first](const char* name) {
        return QString::number(QUrl(first[name].toString()).port());
    };
    start({"--sign-in-port", port("signIn"), "--editor-port", port("editor"), "--update-port", port("update"),
           "--package-port", port("package"), "--control-port", port("control")});
    QCOMPARE(m_ready, first);
    QCOMPARE(Client().get(address("control") + "/").status, 200);
}

void TestServicesProgram::httpsWritesTheCertificate()
{
    start({"--https", "--certificate-out", file("certificate.pem")});
    QCOMPARE(address("certificate"), file("certificate.pem"));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromPath(address("certificate")));
    Client client;
    client.setSslConfiguration(configuration);
    QCOMPARE(client.get(address("signIn") + "/login").status, 200);
    QVERIFY(address("signIn").startsWith("https:"));
}

void TestServicesProgram::seedIsUsed()
{
    QFile seed(file("seed.json"));
    QVERIFY(seed.open(QIODevice::WriteOnly));
    seed.write(R"({"enterprises": [], "accounts": [{"user": "me", "password": "mine", "enterprises": []}]})");
    seed.close();
    start({"--seed", seed.fileName()});
    Client client;
    QCOMPARE(client.signIn(address("signIn"), "me", "mine").url.path(), QString("/login/success"));
}

void TestServicesProgram::endComesOnRequest()
{
    prepareToEnd(*m_program);
    start();
    Client client;
    client.post(address("control") + "/faults?fault=stall", {});
    RawConnection stalled(address("editor"));
    stalled.send("GET /org/heartbeat HTTP/1.1\r\nHost: h\r\n\r\n");
    QVERIFY(askToEnd(*m_program));
    QVERIFY(m_program->waitForFinished(Patience));
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
    QCOMPARE(stalled.readToEnd(), QByteArray());
}

void TestServicesProgram::failureIsExplained_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("complaint");
    const auto row = [](const char* name, const QStringList& arguments, int status, const char* complaint) {
        QTest::newRow(name) << arguments << status << QByteArray(complaint);
    };
    row("large port", {"--sign-in-port", "65536"}, 2, "--sign-in-port: \"65536\" is no port from 0 to 65535");
    row("negative port", {"--editor-port=-1"}, 2, "--editor-port: \"-1\" is no port");
    row("update port", {"--update-port", "x"}, 2, "--update-port: \"x\" is no port");
    row("package port", {"--package-port", "x"}, 2, "--package-port: \"x\" is no port");
    row("port in words", {"--control-port", "http"}, 2, "--control-port: \"http\" is no port");
    row("seed", {"--seed", "/nowhere/seed.json"}, 1, "seed file /nowhere/seed.json: ");
    row("certificate without HTTPS", {"--certificate-out", "x.pem"}, 2,
        "--certificate-out goes with --https only");
    row("certificate nowhere", {"--https", "--certificate-out", "/nowhere/x.pem"}, 1,
        "can't write /nowhere/x.pem: ");
    row("ready file nowhere", {"--ready-file", "/nowhere/ready.json"}, 1,
        "can't write /nowhere/ready.json: ");
    row("ready file in the way", {"--ready-file", QDir::tempPath()}, 1, "can't remove ");
    row("stray argument", {"8080"}, 2, "unknown argument '8080'");
    row("unknown option", {"--port", "1"}, 2, "Unknown option 'port'");
}

void TestServicesProgram::failureIsExplained()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, status);
    QFETCH(const QByteArray, complaint);
    m_program->setArguments(arguments);
    m_program->start();
    QVERIFY(m_program->waitForFinished(Patience));
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), status);
    const QByteArray output = m_program->readAllStandardError();
    QVERIFY2(output.contains(complaint), output.constData());
}

void TestServicesProgram::portThatIsTaken()
{
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    QFile stale(file("ready.json"));
    QVERIFY(stale.open(QIODevice::WriteOnly));
    stale.close();
    m_program->setArguments(
        {"--editor-port", QString::number(other.serverPort()), "--ready-file", stale.fileName()});
    m_program->start();
    QVERIFY(m_program->waitForFinished(Patience));
    QCOMPARE(m_program->exitCode(), 1);
    const QByteArray output = m_program->readAllStandardError();
    QVERIFY2(output.contains("port " + QByteArray::number(other.serverPort())), output.constData());
    QVERIFY(!stale.exists());
}

QTEST_GUILESS_MAIN(TestServicesProgram)
#include "test_services_program.moc"
