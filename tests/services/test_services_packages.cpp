#include "clients.h"

#include "tests/support/files.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

#include <array>
#include <vector>

using NelvoDevkit::Fault;
using NelvoDevkit::LoggedRequest;
using NelvoDevkit::PackageDelivery;
using NelvoDevkit::ServicesOptions;
using TestSupport::md5;
using TestSupport::row;
using TestSupport::StartedServices;

using End = PackageDelivery::End;

namespace {

constexpr int BlockSize = 64 * 1024;

//! Content of increasing numbers, so that a comparison detects bytes at a wrong position.
QByteArray countedContent(int size)
{
    QByteArray content;
    for (int i = 0; content.size() < size; ++i)
        content += QByteArray::number(i) + '\n';
    return content.left(size);
}

PackageDelivery ending(End end, qint64 after)
{
    PackageDelivery delivery;
    delivery.end = end;
    delivery.endAfter = after;
    return delivery;
}

PackageDelivery once(PackageDelivery delivery)
{
    delivery.once = true;
    return delivery;
}

PackageDelivery paced(qint64 bytes, int milliseconds)
{
    PackageDelivery delivery;
    delivery.paceBytes = bytes;
    delivery.paceMilliseconds = milliseconds;
    return delivery;
}

PackageDelivery ignoringRange()
{
    PackageDelivery delivery;
    delivery.ignoresRange = true;
    return delivery;
}

PackageDelivery announcing(qint64 size)
{
    PackageDelivery delivery;
    delivery.announcedSize = size;
    return delivery;
}

QByteArray requestFor(const QString& url, const QByteArray& headers = {})
{
    return "GET " + QUrl(url).path(QUrl::FullyEncoded).toLatin1() + " HTTP/1.1\r\nHost: h\r\n" + headers +
           "\r\n";
}

//! The head and the body of a reply as received.
struct WireAnswer {
    explicit WireAnswer(const QByteArray& bytes)
        : head(bytes.left(bytes.indexOf("\r\n\r\n") + 2)), body(bytes.mid(bytes.indexOf("\r\n\r\n") + 4))
    {}

    bool has(const QByteArray& line) const { return head.contains("\r\n" + line + "\r\n"); }

    QByteArray head;
    QByteArray body;
};

//! Requests the package, reads the whole reply and returns the error that ended the connection. Sets `size`
//! to the size of the body.
boost::system::error_code endOf(const QString& url, std::size_t* size)
{
    using boost::asio::ip::tcp;
    boost::asio::io_context context;
    tcp::socket socket(context);
    boost::system::error_code error;
    socket.connect({boost::asio::ip::address_v4::loopback(), static_cast<quint16>(QUrl(url).port())}, error);
    boost::asio::write(socket, boost::asio::buffer(requestFor(url).toStdString()), error);
    std::string answer;
    boost::asio::read(socket, boost::asio::dynamic_buffer(answer), error);
    const std::size_t head = answer.find("\r\n\r\n");
    *size = head == std::string::npos ? 0 : answer.size() - head - 4;
    return error;
}

} // namespace

//! \brief The package server, and the control path's operations on packages.
class TestServicesPackages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void packageFromMemory();
    void packageFromAFile();
    void packageFromAFileIsReadAnew();
    void packageFromAFileThatIsMissing();
    void packageIsReplaced();
    void packageHasAnyName_data();
    void packageHasAnyName();
    void packageThatIsUnknown();
    void packageIsGotOnly();
    void packageIsSentToSeveralClients();
    void packageOverHttps();
    void packagesAreListed();
    void requestIsLogged();

    void generatedIsTheSameEveryTime();
    void generatedHasNoTwoBlocksAlike();
    void generatedIsOfAnySize();
    void generatedIsSentWhole();

    void range_data();
    void range();
    void rangeOutsideIsRefused_data();
    void rangeOutsideIsRefused();
    void rangeOfAnotherKindIsIgnored_data();
    void rangeOfAnotherKindIsIgnored();
    void rangeIsIgnoredOnDemand();
    void rangeOfAnEmptyPackage();

    void connectionIsKeptAfterAPackage();
    void cutSendsTheFirstBytes();
    void cutCountsTheAnswersBytes();
    void cutAtOnce();
    void cutBehindTheEnd();
    void resetComesAfterTheFirstBytes();
    void stallGoesOnWhenReleased();
    void stallKeepsOtherPackagesGoing();
    void stallEndsWithStop();
    void stallEndsWithRefuse();
    void paceSpreadsThePackage();
    void paceEndsWithStop();
    void lengthThatIsTooLarge();
    void lengthThatIsTooSmall();
    void deliveryOnce();
    void deliveryOfOnePackage();

    void faultsStrike();
    void faultCutsTheBodyInHalf();
    void faultRedirects();
    void cannedReplyGoesFirst();

    void controlListsThePackages();
    void controlAddsAFile();
    void controlAddsAGeneratedPackage();
    void controlRefusesAPackage_data();
    void controlRefusesAPackage();
    void controlSetsTheDelivery();
    void controlEndsAStall();
    void controlRefusesADelivery_data();
    void controlRefusesADelivery();

private:
    QString url() const { return m_services->packageUrl("p.zip"); }
    QByteArray wire(const QByteArray& headers = {}) const
    {
        RawConnection raw(url());
        raw.send(requestFor(url(), headers + "Connection: close\r\n"));
        return raw.readToEnd();
    }
    QNetworkReply* start(Client& client) const { return client.start("GET", url()); }
    Answer control(const QString& path) const { return Client().post(m_services->controlUrl() + path, {}); }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StartedServices> m_services;
    const QByteArray m_content = countedContent(1000000);
};

void TestServicesPackages::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_services = std::make_unique<StartedServices>();
    m_services->packages().add("p.zip", m_content);
}

void TestServicesPackages::cleanup()
{
    m_services.reset();
    m_folder.reset();
}

void TestServicesPackages::packageFromMemory()
{
    const WireAnswer answer(wire());
    QVERIFY(answer.head.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(answer.has("Content-Length: 1000000"));
    QVERIFY(answer.has("Content-Type: application/octet-stream"));
    QVERIFY(answer.has("Accept-Ranges: bytes"));
    QCOMPARE(answer.body, m_content);
    QCOMPARE(m_services->packages().bytes("p.zip", 999998, 10), m_content.right(2));
}

void TestServicesPackages::packageFromAFile()
{
    QFile file(m_folder->filePath("f"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(m_content);
    file.close();
    m_services->packages().addFile("f.zip", file.fileName());
    QCOMPARE(Client().get(m_services->packageUrl("f.zip")).body, m_content);
    QCOMPARE(m_services->packageRelease("f.zip", {}, {}).md5, md5(m_content));
}

void TestServicesPackages::packageFromAFileIsReadAnew()
{
    QFile file(m_folder->filePath("f"));
    m_services->packages().addFile("f.zip", file.fileName());
    for (const QByteArray& content : {QByteArray("first"), QByteArray("the second")}) {
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        QCOMPARE(Client().get(m_services->packageUrl("f.zip")).body, content);
    }
}

void TestServicesPackages::packageFromAFileThatIsMissing()
{
    m_services->packages().addFile("f.zip", m_folder->filePath("missing"));
    QCOMPARE(Client().get(m_services->packageUrl("f.zip")).status, 404);
    QCOMPARE(m_services->packages().bytes("f.zip", 0, 1), QByteArray());
}

void TestServicesPackages::packageIsReplaced()
{
    m_services->packages().add("p.zip", "other");
    QCOMPARE(Client().get(url()).body, QByteArray("other"));
}

void TestServicesPackages::packageHasAnyName_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"更新包 1.0.1.zip", "a/b.zip", "100%.zip", "a?b#c.zip", "a+b.zip"})
        QTest::newRow(name) << QString(name);
}

void TestServicesPackages::packageHasAnyName()
{
    QFETCH(const QString, name);
    m_services->packages().add(name, "content");
    QCOMPARE(Client().get(m_services->packageUrl(name)).body, QByteArray("content"));
}

void TestServicesPackages::packageThatIsUnknown()
{
    QCOMPARE(Client().get(m_services->packageUrl("q.zip")).status, 404);
    QCOMPARE(Client().get(m_services->packageUrl() + "/p.zip").status, 404);
}

void TestServicesPackages::packageIsGotOnly()
{
    const Answer answer = Client().post(url(), {});
    QCOMPARE(answer.status, 405);
    QCOMPARE(answer.allow, QByteArray("GET"));
}

void TestServicesPackages::packageIsSentToSeveralClients()
{
    std::array<Client, 4> clients;
    std::vector<QNetworkReply*> replies;
    replies.reserve(clients.size());
    for (Client& client : clients)
        replies.push_back(start(client));
    for (QNetworkReply* reply : replies)
        QCOMPARE(Client::finish(reply).body, m_content);
}

void TestServicesPackages::packageOverHttps()
{
    ServicesOptions options;
    options.https = true;
    StartedServices services(options);
    services.packages().add("p.zip", m_content);
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.setCaCertificates(QSslCertificate::fromData(services.certificatePem()));
    Client client;
    client.setSslConfiguration(trusting);
    QVERIFY(services.packageUrl("p.zip").startsWith("https:"));
    QVERIFY(services.updateUrl().startsWith("https:"));
    QCOMPARE(client.get(services.packageUrl("p.zip")).body, m_content);
}

void TestServicesPackages::packagesAreListed()
{
    m_services->packages().addGenerated("a.zip", 1);
    QCOMPARE(m_services->packages().names(), (QStringList{"NelvoEditor-1.0.1.zip", "a.zip", "p.zip"}));
}

void TestServicesPackages::requestIsLogged()
{
    wire("Range: bytes=999999-\r\n");
    const QVector<LoggedRequest> requests = m_services->log().requests();
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].service, QByteArray("package"));
    QCOMPARE(requests[0].target, QByteArray("/packages/p.zip"));
    QCOMPARE(requests[0].header("Range"), QByteArray("bytes=999999-"));
}

void TestServicesPackages::generatedIsTheSameEveryTime()
{
    m_services->packages().addGenerated("g.zip", 200000);
    const NelvoDevkit::Services other;
    other.packages().addGenerated("another.zip", 300000);
    const QByteArray bytes = m_services->packages().bytes("g.zip", 0, 300000);
    QCOMPARE(bytes.size(), 200000);
    QCOMPARE(other.packages().bytes("another.zip", 0, 200000), bytes);
    for (const int offset : {3, 65530, 65536, 65537, 131075})
        QCOMPARE(other.packages().bytes("another.zip", offset, 20), bytes.mid(offset, 20));
    QCOMPARE(m_services->packageRelease("g.zip", {}, {}).md5, md5(bytes));
}

void TestServicesPackages::generatedHasNoTwoBlocksAlike()
{
    constexpr int blocks = 1000;
    m_services->packages().addGenerated("g.zip", blocks * qint64{BlockSize});
    QSet<QString> seen;
    for (int i = 0; i < blocks; ++i)
        seen.insert(md5(m_services->packages().bytes("g.zip", i * qint64{BlockSize}, BlockSize)));
    QCOMPARE(seen.size(), blocks);
}

void TestServicesPackages::generatedIsOfAnySize()
{
    // The package is larger than any memory or disk.
    constexpr qint64 size = qint64{1} << 60;
    m_services->packages().addGenerated("p.zip", size);
    const WireAnswer answer(wire("Range: bytes=" + QByteArray::number(size - 100) + "-\r\n"));
    QVERIFY(answer.head.startsWith("HTTP/1.1 206 "));
    QVERIFY(answer.has("Content-Range: bytes 1152921504606846876-1152921504606846975/1152921504606846976"));
    QCOMPARE(answer.body, m_services->packages().bytes("p.zip", size - 100, 1000));
    QCOMPARE(answer.body.size(), 100);
}

void TestServicesPackages::generatedIsSentWhole()
{
    constexpr int size = 10 * 1024 * 1024 + 17;
    m_services->packages().addGenerated("p.zip", size);
    const QByteArray body = Client().get(url()).body;
    QCOMPARE(body.size(), size);
    QCOMPARE(md5(body), m_services->packageRelease("p.zip", {}, {}).md5);
}

void TestServicesPackages::range_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<QByteArray>("contentRange");
    QTest::newRow("everything") << 0 << QByteArray("bytes 0-999999/1000000");
    QTest::newRow("rest") << 300001 << QByteArray("bytes 300001-999999/1000000");
    QTest::newRow("last byte") << 999999 << QByteArray("bytes 999999-999999/1000000");
}

void TestServicesPackages::range()
{
    QFETCH(const int, start);
    QFETCH(const QByteArray, contentRange);
    const WireAnswer answer(wire("Range: bytes=" + QByteArray::number(start) + "-\r\n"));
    QVERIFY(answer.head.startsWith("HTTP/1.1 206 Partial Content\r\n"));
    QVERIFY(answer.has("Content-Range: " + contentRange));
    QVERIFY(answer.has("Content-Length: " + QByteArray::number(1000000 - start)));
    QCOMPARE(answer.body, m_content.mid(start));
}

void TestServicesPackages::rangeOutsideIsRefused_data()
{
    QTest::addColumn<QByteArray>("start");
    QTest::newRow("end") << QByteArray("1000000");
    QTest::newRow("behind") << QByteArray("9223372036854775807");
}

void TestServicesPackages::rangeOutsideIsRefused()
{
    QFETCH(const QByteArray, start);
    const WireAnswer answer(wire("Range: bytes=" + start + "-\r\n"));
    QVERIFY(answer.head.startsWith("HTTP/1.1 416 Range Not Satisfiable\r\n"));
    QVERIFY(answer.has("Content-Range: bytes */1000000"));
}

void TestServicesPackages::rangeOfAnotherKindIsIgnored_data()
{
    QTest::addColumn<QByteArray>("range");
    for (const char* range : {"bytes=0-5", "bytes=-5", "bytes=x-", "bytes=-", "bytes=-5-", "items=5-"})
        QTest::newRow(range) << QByteArray(range);
}

void TestServicesPackages::rangeOfAnotherKindIsIgnored()
{
    QFETCH(const QByteArray, range);
    const WireAnswer answer(wire("Range: " + range + "\r\n"));
    QVERIFY(answer.head.startsWith("HTTP/1.1 200 OK\r\n"));
    QCOMPARE(answer.body, m_content);
}

void TestServicesPackages::rangeIsIgnoredOnDemand()
{
    m_services->packages().setDelivery("p.zip", ignoringRange());
    for (const char* start : {"300001", "1000000"}) {
        const WireAnswer answer(wire("Range: bytes=" + QByteArray(start) + "-\r\n"));
        QVERIFY(answer.head.startsWith("HTTP/1.1 200 OK\r\n"));
        QVERIFY(!answer.head.contains("Accept-Ranges"));
        QCOMPARE(answer.body, m_content);
    }
}

void TestServicesPackages::rangeOfAnEmptyPackage()
{
    m_services->packages().add("p.zip", QByteArray());
    const WireAnswer whole(wire());
    QVERIFY(whole.head.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(whole.has("Content-Length: 0"));
    QVERIFY(wire("Range: bytes=0-\r\n").startsWith("HTTP/1.1 416 "));
}

void TestServicesPackages::connectionIsKeptAfterAPackage()
{
    RawConnection raw(url());
    for (int i = 0; i < 2; ++i) {
        raw.send(requestFor(url()));
        QCOMPARE(WireAnswer(raw.readAnswer()).body, m_content);
    }
}

void TestServicesPackages::cutSendsTheFirstBytes()
{
    m_services->packages().setDelivery("p.zip", ending(End::Cut, 700001));
    const WireAnswer answer(wire());
    QVERIFY(answer.head.startsWith("HTTP/1.1 200 OK\r\n"));
    QVERIFY(answer.has("Content-Length: 1000000"));
    QCOMPARE(answer.body, m_content.left(700001));
    std::size_t size = 0;
    QCOMPARE(endOf(url(), &size), make_error_code(boost::asio::error::eof));
    QCOMPARE(size, std::size_t{700001});
}

void TestServicesPackages::cutCountsTheAnswersBytes()
{
    m_services->packages().setDelivery("p.zip", ending(End::Cut, 10));
    const WireAnswer answer(wire("Range: bytes=500000-\r\n"));
    QVERIFY(answer.has("Content-Length: 500000"));
    QCOMPARE(answer.body, m_content.mid(500000, 10));
}

void TestServicesPackages::cutAtOnce()
{
    m_services->packages().setDelivery("p.zip", ending(End::Cut, 0));
    const WireAnswer answer(wire());
    QVERIFY(answer.has("Content-Length: 1000000"));
    QCOMPARE(answer.body, QByteArray());
}

void TestServicesPackages::cutBehindTheEnd()
{
    m_services->packages().setDelivery("p.zip", ending(End::Cut, 2000000));
    QCOMPARE(Client().get(url()).body, m_content);
}

void TestServicesPackages::resetComesAfterTheFirstBytes()
{
    m_services->packages().setDelivery("p.zip", ending(End::Reset, 1000));
    std::size_t size = 0;
    QCOMPARE(endOf(url(), &size), make_error_code(boost::asio::error::connection_reset));
    QVERIFY(size <= 1000);
}

void TestServicesPackages::stallGoesOnWhenReleased()
{
    m_services->packages().setDelivery("p.zip", once(ending(End::Stall, 1000)));
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() >= 1000; }, Patience));
    // The services send other replies, but this reply does not continue.
    QCOMPARE(Client().get(url()).body, m_content);
    QCOMPARE(reply->bytesAvailable(), 1000);
    QVERIFY(!reply->isFinished());
    m_services->packages().setDelivery("p.zip", {});
    QCOMPARE(Client::finish(reply).body, m_content);
}

void TestServicesPackages::stallKeepsOtherPackagesGoing()
{
    m_services->packages().setDelivery("p.zip", ending(End::Stall, 1000));
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() >= 1000; }, Patience));
    m_services->packages().add("q.zip", "content");
    m_services->packages().setDelivery("q.zip", {});
    QCOMPARE(Client().get(m_services->packageUrl("q.zip")).body, QByteArray("content"));
    m_services->clearFaults();
    QCOMPARE(Client().get(m_services->packageUrl("q.zip")).body, QByteArray("content"));
    QVERIFY(!reply->isFinished());
    QCOMPARE(reply->bytesAvailable(), 1000);
}

void TestServicesPackages::stallEndsWithStop()
{
    m_services->packages().setDelivery("p.zip", ending(End::Stall, 1000));
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() >= 1000; }, Patience));
    m_services->stop();
    QCOMPARE(Client::finish(reply).body, m_content.left(1000));
}

void TestServicesPackages::stallEndsWithRefuse()
{
    m_services->packages().setDelivery("p.zip", ending(End::Stall, 1000));
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() >= 1000; }, Patience));
    m_services->addFault({Fault::Refuse, {}, {}, 0, false});
    QCOMPARE(Client::finish(reply).body, m_content.left(1000));
}

void TestServicesPackages::paceSpreadsThePackage()
{
    m_services->packages().add("p.zip", m_content.left(1000));
    m_services->packages().setDelivery("p.zip", paced(100, 30));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(Client().get(url()).body, m_content.left(1000));
    QVERIFY2(timer.elapsed() >= 270, qPrintable(QString::number(timer.elapsed())));
}

void TestServicesPackages::paceEndsWithStop()
{
    m_services->packages().setDelivery("p.zip", paced(1000, 60 * 60 * 1000));
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() >= 1000; }, Patience));
    m_services->stop();
    QCOMPARE(Client::finish(reply).body, m_content.left(1000));
}

void TestServicesPackages::lengthThatIsTooLarge()
{
    m_services->packages().setDelivery("p.zip", announcing(1000001));
    RawConnection raw(url());
    raw.send(requestFor(url()));
    const WireAnswer answer(raw.readToEnd());
    QVERIFY(answer.has("Content-Length: 1000001"));
    QCOMPARE(answer.body, m_content);
}

void TestServicesPackages::lengthThatIsTooSmall()
{
    m_services->packages().setDelivery("p.zip", announcing(999999));
    RawConnection raw(url());
    raw.send(requestFor(url()));
    const WireAnswer answer(raw.readToEnd());
    QVERIFY(answer.has("Content-Length: 999999"));
    QCOMPARE(answer.body, m_content);
    QCOMPARE(Client().get(url()).body, m_content.left(999999));
}

void TestServicesPackages::deliveryOnce()
{
    m_services->packages().setDelivery("p.zip", once(ending(End::Cut, 10)));
    QCOMPARE(WireAnswer(wire()).body, m_content.left(10));
    QCOMPARE(WireAnswer(wire()).body, m_content);
}

void TestServicesPackages::deliveryOfOnePackage()
{
    m_services->packages().add("q.zip", "content");
    m_services->packages().setDelivery("p.zip", ending(End::Cut, 0));
    QCOMPARE(Client().get(m_services->packageUrl("q.zip")).body, QByteArray("content"));
}

void TestServicesPackages::faultsStrike()
{
    m_services->addFault({Fault::Status, "/packages/p.zip", "GET", 503, true});
    QCOMPARE(Client().get(url()).status, 503);
    m_services->addFault({Fault::WrongJson, "/packages/p.zip", {}, 0, true});
    QCOMPARE(Client().get(url()).body, QByteArray("[]"));
    m_services->addFault({Fault::Reset, "/packages/p.zip", {}, 0, true});
    std::size_t size = 0;
    QCOMPARE(endOf(url(), &size), make_error_code(boost::asio::error::connection_reset));
    QCOMPARE(size, std::size_t{0});
    m_services->addFault({Fault::Stall, "/packages/p.zip", {}, 0, false});
    Client client;
    QNetworkReply* stalled = start(client);
    QVERIFY(QTest::qWaitFor([this] { return m_services->log().requests().size() == 4; }, Patience));
    m_services->clearFaults();
    QCOMPARE(Client::finish(stalled).body, m_content);
}

void TestServicesPackages::faultCutsTheBodyInHalf()
{
    m_services->addFault({Fault::CutBody, {}, {}, 0, false});
    const WireAnswer answer(wire());
    QVERIFY(answer.has("Content-Length: 1000000"));
    QCOMPARE(answer.body, m_content.left(500000));
}

void TestServicesPackages::faultRedirects()
{
    m_services->addFault({Fault::Redirect, "/packages/p.zip", {}, 0, false});
    QCOMPARE(Client().get(url()).body, m_content);
}

void TestServicesPackages::cannedReplyGoesFirst()
{
    m_services->setReply("GET", "/packages/p.zip", {200, "text/plain", "canned", {}});
    QCOMPARE(Client().get(url()).body, QByteArray("canned"));
}

void TestServicesPackages::controlListsThePackages()
{
    const QJsonObject expected = {{"NelvoEditor-1.0.1.zip", m_services->packageUrl("NelvoEditor-1.0.1.zip")},
                                  {"p.zip", url()}};
    const QByteArray list = Client().get(m_services->controlUrl() + "/packages").body;
    QCOMPARE(QJsonDocument::fromJson(list).object(), expected);
}

void TestServicesPackages::controlAddsAFile()
{
    QFile file(m_folder->filePath("f"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("content");
    file.close();
    QCOMPARE(control("/packages?name=f.zip&file=" + file.fileName()).status, 200);
    QCOMPARE(Client().get(m_services->packageUrl("f.zip")).body, QByteArray("content"));
}

void TestServicesPackages::controlAddsAGeneratedPackage()
{
    QCOMPARE(control("/packages?name=g.zip&size=5000000000").status, 200);
    QCOMPARE(m_services->packages().bytes("g.zip", 4999999990, 100).size(), 10);
}

void TestServicesPackages::controlRefusesAPackage_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    row("no name", "?size=1", QByteArray("\"name\" must be the name of a package"));
    row("neither", "?name=a", QByteArray("there must be either \"file\" or \"size\""));
    row("both", "?name=a&file=b&size=1", QByteArray("there must be either \"file\" or \"size\""));
    row("size", "?name=a&size=big", QByteArray("\"size\" must be a number of bytes"));
    row("missing file", "?name=a&file=/nowhere/b", QByteArray("can't read a file \"/nowhere/b\""));
    row("directory", "?name=a&file=/", QByteArray("can't read a file \"/\""));
}

void TestServicesPackages::controlRefusesAPackage()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    const Answer answer = control("/packages" + parameters);
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QCOMPARE(m_services->packages().names().size(), 2);
}

void TestServicesPackages::controlSetsTheDelivery()
{
    QCOMPARE(control("/packages/delivery?package=p.zip&end=cut&after=10&once=1").status, 200);
    QCOMPARE(WireAnswer(wire()).body, m_content.left(10));
    QCOMPARE(WireAnswer(wire()).body, m_content);
    QCOMPARE(control("/packages/delivery?package=p.zip&ignoresRange=1&announced=2000000").status, 200);
    const WireAnswer answer(wire("Range: bytes=10-\r\n"));
    QVERIFY(answer.head.startsWith("HTTP/1.1 200 "));
    QVERIFY(answer.has("Content-Length: 2000000"));
    QCOMPARE(control("/packages/delivery?package=p.zip&end=reset&after=0").status, 200);
    std::size_t size = 0;
    QCOMPARE(endOf(url(), &size), make_error_code(boost::asio::error::connection_reset));
    QCOMPARE(control("/packages/delivery?package=p.zip&paceBytes=500000&paceMilliseconds=100").status, 200);
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(WireAnswer(wire()).body, m_content);
    QVERIFY(timer.elapsed() >= 100);
    QCOMPARE(control("/packages/delivery?package=p.zip").status, 200);
    QVERIFY(WireAnswer(wire("Range: bytes=10-\r\n")).head.startsWith("HTTP/1.1 206 "));
}

void TestServicesPackages::controlEndsAStall()
{
    QCOMPARE(control("/packages/delivery?package=p.zip&end=stall&after=10").status, 200);
    Client client;
    QNetworkReply* reply = start(client);
    QVERIFY(QTest::qWaitFor([reply] { return reply->bytesAvailable() == 10; }, Patience));
    QCOMPARE(control("/packages/delivery?package=p.zip").status, 200);
    QCOMPARE(Client::finish(reply).body, m_content);
}

void TestServicesPackages::controlRefusesADelivery_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    row("unknown package", "?package=q.zip",
        QByteArray("\"q.zip\" is no package; parameter \"package\" is one of "
                   "NelvoEditor-1.0.1.zip, p.zip"));
    row("end", "?package=p.zip&end=bad", QByteArray("\"end\" must be whole, cut, reset or stall"));
    row("no after", "?package=p.zip&end=cut", QByteArray("\"after\" must be a number of bytes"));
    row("idle after", "?package=p.zip&after=1", QByteArray("\"after\" goes with cut, reset and stall only"));
    row("pace", "?package=p.zip&paceBytes=x", QByteArray("\"paceBytes\" must be a number"));
    row("interval", "?package=p.zip&paceBytes=1&paceMilliseconds=0",
        QByteArray("\"paceMilliseconds\" must be a number from 1 to"));
    row("flag", "?package=p.zip&ignoresRange=yes", QByteArray("\"ignoresRange\" must be 0 or 1"));
    row("length", "?package=p.zip&announced=-1", QByteArray("\"announced\" must be a number"));
}

void TestServicesPackages::controlRefusesADelivery()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    const Answer answer = control("/packages/delivery" + parameters);
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QCOMPARE(Client().get(url()).body, m_content);
}

QTEST_GUILESS_MAIN(TestServicesPackages)
#include "test_services_packages.moc"
