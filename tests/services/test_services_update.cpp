#include "clients.h"

#include "tests/support/files.h"
#include "tests/support/row.h"
#include "tests/support/startedservices.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using NelvoDevkit::Fault;
using NelvoDevkit::LoggedRequest;
using NelvoDevkit::Release;
using NelvoDevkit::Services;
using NelvoDevkit::ServicesOptions;
using TestSupport::json;
using TestSupport::row;
using TestSupport::StartedServices;

namespace {

const QString FindLatestPath = "/v1.0/service/sys/productVersion/findLatest";

QJsonObject object(const Answer& answer)
{
    return QJsonDocument::fromJson(answer.body).object();
}

//! A seed without accounts and enterprises, with the given `updates`.
QByteArray seedWith(const QByteArray& updates)
{
    return R"({"accounts": [], "enterprises": [], "updates": )" + updates + "}";
}

QByteArray seedWithRelease(const QByteArray& release)
{
    return seedWith(R"({"token": "t", "releases": [)" + release + "]}");
}

} // namespace

//! \brief The update service, and the control path's operations on releases.
class TestServicesUpdate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void findLatestTellsTheSeedsRelease();
    void findLatestTellsAPackageThatIsThere();
    void findLatestNeedsTheToken_data();
    void findLatestNeedsTheToken();
    void findLatestOfAnUnknownProduct();
    void findLatestOfAnotherRequest_data();
    void findLatestOfAnotherRequest();
    void findLatestIsAPost();
    void requestIsLoggedAsReceived();

    void releaseIsReplaced();
    void releaseOfAnotherProductIsAdded();
    void releaseLiesOnThePackageServer();
    void releaseOfAPackage();
    void releaseOfAnUnknownPackage();
    void releaseComesBackWithTheSeed();

    void faultsStrike();
    void refuseStrikesBothServers();
    void refuseOfAPathStrikesItsServerOnly();
    void cannedReplyGoesFirst();

    void seedOfOnesOwn();
    void seedWithoutUpdates();
    void seedIsChecked_data();
    void seedIsChecked();

    void controlListsTheReleases();
    void controlSetsARelease();
    void controlSetsTheReleaseOfAPackage();
    void controlSetsAReleaseThatLies();
    void controlRefusesARelease_data();
    void controlRefusesARelease();

private:
    QString latest(const QString& productId, const QString& token) const
    {
        return m_services->updateUrl() + FindLatestPath + "?access_token=" + token +
               "&productId=" + productId + "&productVersion=0.0.0";
    }
    Answer findLatest(const QString& productId, const QString& token) const
    {
        return Client().post(latest(productId, token), "{\n}\n", "application/json");
    }
    QJsonObject latestData(const QString& productId) const
    {
        return object(findLatest(productId, m_services->updates().token())).value("data").toObject();
    }
    Answer control(const QString& path) const { return Client().post(m_services->controlUrl() + path, {}); }
    void startWith(const QByteArray& seed);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StartedServices> m_services;
};

void TestServicesUpdate::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_services = std::make_unique<StartedServices>();
}

void TestServicesUpdate::cleanup()
{
    m_services.reset();
    m_folder.reset();
}

void TestServicesUpdate::startWith(const QByteArray& seed)
{
    ServicesOptions options;
    options.seedFile = m_folder->filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(seed);
    file.close();
    m_services = std::make_unique<StartedServices>(options);
}

void TestServicesUpdate::findLatestTellsTheSeedsRelease()
{
    QCOMPARE(m_services->updates().token(), QString("nelvo-update-token"));
    const Answer answer = findLatest("nelvo-editor", "nelvo-update-token");
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.contentType, QByteArray("application/json;charset=UTF-8"));
    QCOMPARE(object(answer).value("code"), QJsonValue(200));
    const QJsonObject data = object(answer).value("data").toObject();
    QCOMPARE(data.keys(), (QStringList{"fullMd5", "fullPath", "fullSize", "pVersion", "remarks"}));
    QCOMPARE(data.value("pVersion").toString(), QString("1.0.1"));
    QVERIFY(data.value("remarks").toString().contains('\n'));
    QVERIFY(data.value("fullSize").isDouble());
}

void TestServicesUpdate::findLatestTellsAPackageThatIsThere()
{
    const QJsonObject data = latestData("nelvo-editor");
    const QString path = data.value("fullPath").toString();
    QVERIFY(path.startsWith(m_services->packageUrl() + '/'));
    const QByteArray package = Client().get(path).body;
    QVERIFY(package.startsWith("PK"));
    QCOMPARE(package.size(), data.value("fullSize").toInt());
    QCOMPARE(TestSupport::md5(package), data.value("fullMd5").toString());
}

void TestServicesUpdate::findLatestNeedsTheToken_data()
{
    QTest::addColumn<QString>("token");
    QTest::newRow("wrong") << "nelvo-update-tokem";
    QTest::newRow("other case") << "NELVO-UPDATE-TOKEN";
    QTest::newRow("empty") << "";
}

void TestServicesUpdate::findLatestNeedsTheToken()
{
    QFETCH(const QString, token);
    const Answer answer = findLatest("nelvo-editor", token);
    QCOMPARE(answer.status, 200);
    QCOMPARE(object(answer).value("code"), QJsonValue(401));
    QCOMPARE(object(answer).value("data"), QJsonValue(QJsonObject()));
}

void TestServicesUpdate::findLatestOfAnUnknownProduct()
{
    const Answer answer = findLatest("nelvo-viewer", "nelvo-update-token");
    QCOMPARE(answer.status, 200);
    QCOMPARE(object(answer).value("code"), QJsonValue(404));
    QCOMPARE(object(answer).value("data"), QJsonValue(QJsonObject()));
}

void TestServicesUpdate::findLatestOfAnotherRequest_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QByteArray>("body");
    const QString rest = "?access_token=nelvo-update-token&productId=nelvo-editor";
    QTest::newRow("no version") << rest << QByteArray("{}");
    QTest::newRow("no body") << rest + "&productVersion=0.0.0" << QByteArray();
    QTest::newRow("array") << rest + "&productVersion=0.0.0" << QByteArray("[]");
}

void TestServicesUpdate::findLatestOfAnotherRequest()
{
    QFETCH(const QString, query);
    QFETCH(const QByteArray, body);
    const QString url = m_services->updateUrl() + FindLatestPath + query;
    QCOMPARE(object(Client().post(url, body, "application/json")).value("code"), QJsonValue(400));
}

void TestServicesUpdate::findLatestIsAPost()
{
    const Answer answer = Client().get(latest("nelvo-editor", "nelvo-update-token"));
    QCOMPARE(answer.status, 405);
    QCOMPARE(answer.allow, QByteArray("POST"));
    QCOMPARE(Client().post(m_services->updateUrl() + "/v1.0/service", "{}").status, 404);
}

void TestServicesUpdate::requestIsLoggedAsReceived()
{
    findLatest("nelvo-editor", "a%20b");
    const QVector<LoggedRequest> requests = m_services->log().requests();
    QCOMPARE(requests.size(), 1);
    QCOMPARE(requests[0].service, QByteArray("update"));
    QCOMPARE(requests[0].method, QByteArray("POST"));
    QCOMPARE(requests[0].target,
             FindLatestPath.toLatin1() + "?access_token=a%20b&productId=nelvo-editor&productVersion=0.0.0");
    QCOMPARE(requests[0].body, QByteArray("{\n}\n"));
}

void TestServicesUpdate::releaseIsReplaced()
{
    m_services->updates().setRelease("nelvo-editor",
                                     {"2.3.4", "新", "ABC", qint64{1} << 40, "http://h/p.zip?x=1"});
    const QJsonObject expected = {{"pVersion", "2.3.4"},
                                  {"remarks", "新"},
                                  {"fullMd5", "ABC"},
                                  {"fullSize", 1099511627776.0},
                                  {"fullPath", "http://h/p.zip?x=1"}};
    QCOMPARE(latestData("nelvo-editor"), expected);
}

void TestServicesUpdate::releaseOfAnotherProductIsAdded()
{
    m_services->updates().setRelease("a b", {"9", {}, {}, 0, {}});
    QCOMPARE(latestData("a%20b").value("pVersion").toString(), QString("9"));
    QCOMPARE(latestData("nelvo-editor").value("pVersion").toString(), QString("1.0.1"));
    QCOMPARE(m_services->updates().releases().keys(), (QStringList{"a b", "nelvo-editor"}));
}

void TestServicesUpdate::releaseLiesOnThePackageServer()
{
    m_services->updates().setRelease("nelvo-editor", {"2", {}, {}, 0, "/packages/p.zip"});
    QCOMPARE(m_services->updates().releases().value("nelvo-editor").path,
             m_services->packageUrl() + "/packages/p.zip");
}

void TestServicesUpdate::releaseOfAPackage()
{
    m_services->packages().add("p.zip", "content");
    const Release release = m_services->packageRelease("p.zip", "1.5", "notes");
    QCOMPARE(release.version, QString("1.5"));
    QCOMPARE(release.remarks, QString("notes"));
    QCOMPARE(release.md5, QString("9a0364b9e99bb480dd25e1f0284c8555"));
    QCOMPARE(release.size, 7);
    QCOMPARE(release.path, m_services->packageUrl("p.zip"));
}

void TestServicesUpdate::releaseOfAnUnknownPackage()
{
    const Release release = m_services->packageRelease("p.zip", "1", {});
    QCOMPARE(release.md5, QString());
    QCOMPARE(release.size, 0);
    QCOMPARE(release.path, m_services->packageUrl("p.zip"));
}

void TestServicesUpdate::releaseComesBackWithTheSeed()
{
    m_services->updates().setRelease("nelvo-editor", {"2", {}, {}, 0, {}});
    m_services->updates().setRelease("other", {"2", {}, {}, 0, {}});
    m_services->resetState();
    QCOMPARE(m_services->updates().releases().keys(), QStringList("nelvo-editor"));
    QCOMPARE(latestData("nelvo-editor").value("pVersion").toString(), QString("1.0.1"));
}

void TestServicesUpdate::faultsStrike()
{
    m_services->addFault({Fault::Status, FindLatestPath, "POST", 503, true});
    QCOMPARE(findLatest("nelvo-editor", "t").status, 503);
    m_services->addFault({Fault::NotJson, FindLatestPath, {}, 0, true});
    QVERIFY(!findLatest("nelvo-editor", "t").isJson());
    m_services->addFault({Fault::WrongJson, FindLatestPath, {}, 0, true});
    QVERIFY(QJsonDocument::fromJson(findLatest("nelvo-editor", "t").body).isArray());
    m_services->addFault({Fault::Stall, FindLatestPath, {}, 0, false});
    Client client;
    QNetworkReply* stalled = client.start("POST", latest("nelvo-editor", "nelvo-update-token"), "{}");
    QVERIFY(QTest::qWaitFor([this] { return m_services->log().requests().size() == 4; }, Patience));
    QVERIFY(!stalled->isFinished());
    m_services->clearFaults();
    QCOMPARE(object(Client::finish(stalled)).value("code"), QJsonValue(200));
}

void TestServicesUpdate::refuseStrikesBothServers()
{
    m_services->addFault({Fault::Refuse, {}, {}, 0, false});
    for (const QString& url : {m_services->updateUrl(), m_services->packageUrl()})
        QCOMPARE(Client().get(url).error, QNetworkReply::ConnectionRefusedError);
    m_services->clearFaults();
    for (const QString& url : {m_services->updateUrl(), m_services->packageUrl()})
        QCOMPARE(Client().get(url).status, 404);
}

void TestServicesUpdate::refuseOfAPathStrikesItsServerOnly()
{
    m_services->addFault({Fault::Refuse, FindLatestPath, {}, 0, false});
    findLatest("nelvo-editor", "t");
    QCOMPARE(findLatest("nelvo-editor", "t").error, QNetworkReply::ConnectionRefusedError);
    QCOMPARE(Client().get(m_services->packageUrl()).status, 404);
}

void TestServicesUpdate::cannedReplyGoesFirst()
{
    m_services->setReply("POST", FindLatestPath, json(R"({"code":"200"})"));
    QCOMPARE(findLatest("nelvo-editor", "wrong").body, QByteArray(R"({"code":"200"})"));
}

void TestServicesUpdate::seedOfOnesOwn()
{
    startWith(seedWithRelease(
        R"({"productId": "a", "version": "1", "remarks": "r", "path": "/x.zip", "md5": "m", "size": 5000000000},
           {"productId": "b", "version": "2", "remarks": "r", "package": "p.zip", "files": {"目录/文": "t"}})"));
    QCOMPARE(m_services->updates().token(), QString("t"));
    const QJsonObject expected = {{"pVersion", "1"},
                                  {"remarks", "r"},
                                  {"fullMd5", "m"},
                                  {"fullSize", 5000000000.0},
                                  {"fullPath", m_services->packageUrl() + "/x.zip"}};
    QCOMPARE(latestData("a"), expected);
    QCOMPARE(latestData("b").value("fullPath").toString(), m_services->packageUrl("p.zip"));
    QVERIFY(Client().get(m_services->packageUrl("p.zip")).body.startsWith("PK"));
}

void TestServicesUpdate::seedWithoutUpdates()
{
    startWith(R"({"accounts": [], "enterprises": []})");
    QCOMPARE(m_services->updates().token(), QString());
    QVERIFY(m_services->updates().releases().isEmpty());
    QVERIFY(m_services->packages().names().isEmpty());
    // Without a token in the seed, the service rejects every request, even for a product with a release.
    m_services->updates().setRelease("a", {"1", {}, {}, 0, {}});
    QCOMPARE(object(findLatest("a", "")).value("code"), QJsonValue(401));
}

void TestServicesUpdate::seedIsChecked_data()
{
    QTest::addColumn<QByteArray>("seed");
    QTest::addColumn<QString>("complaint");
    const QByteArray head = R"("productId": "a", "version": "1", "remarks": "r", )";
    row("array", seedWith("[]"), "updates must be an object");
    row("no token", seedWith(R"({"releases": []})"), "updates needs a text \"token\" that is not empty");
    row("no releases", seedWith(R"({"token": "t"})"), "updates needs an array \"releases\"");
    row("release", seedWithRelease("1"), "updates: releases[0] must be an object");
    row("no product", seedWithRelease(R"({"version": "1"})"),
        "updates: releases[0] needs a text \"productId\"");
    row("no version", seedWithRelease(R"({"productId": "a"})"),
        "updates: releases[0] needs a text \"version\"");
    row("no path", seedWithRelease("{" + head + R"("md5": "m", "size": 1})"),
        "updates: releases[0] needs a text \"path\"");
    row("no MD5", seedWithRelease("{" + head + R"("path": "/p", "size": 1})"),
        "updates: releases[0] needs a text \"md5\"");
    row("size", seedWithRelease("{" + head + R"("path": "/p", "md5": "m", "size": "1"})"),
        "updates: releases[0]: \"size\" must be a whole number");
    row("package without a name", seedWithRelease("{" + head + R"("files": {}})"),
        "updates: releases[0] needs a text \"package\"");
    row("name of a file", seedWithRelease("{" + head + R"("package": "p.zip", "files": {"镕": ""}})"),
        "updates: releases[0]: GB2312 can't hold the name \"镕\"");
    row("product twice",
        seedWithRelease("{" + head + R"("package": "p", "files": {}}, {)" + head +
                        R"("package": "p", "files": {}})"),
        "updates: releases[1]: there is a release of \"a\" already");
}

void TestServicesUpdate::seedIsChecked()
{
    QFETCH(const QByteArray, seed);
    QFETCH(const QString, complaint);
    ServicesOptions options;
    options.seedFile = m_folder->filePath("seed.json");
    QFile file(options.seedFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(seed);
    file.close();
    QString error;
    QVERIFY(!Services(options).start(&error));
    QVERIFY2(error.startsWith("seed file " + options.seedFile + ": " + complaint), qPrintable(error));
}

void TestServicesUpdate::controlListsTheReleases()
{
    m_services->updates().setRelease("nelvo-editor", {"2", "r", "m", 3, "http://h/p"});
    const QJsonObject expected = {
        {"nelvo-editor",
         QJsonObject{{"version", "2"}, {"remarks", "r"}, {"md5", "m"}, {"size", 3}, {"path", "http://h/p"}}}};
    QCOMPARE(object(Client().get(m_services->controlUrl() + "/releases")), expected);
    QVERIFY(m_services->log().requests().isEmpty());
}

void TestServicesUpdate::controlSetsARelease()
{
    const Answer answer = control("/releases?productId=p&version=3.1&remarks=a%0Ab&md5=m&size=5000000000"
                                  "&path=http%3A%2F%2Fh%2Fx%3Fy%3D1");
    QCOMPARE(answer.status, 200);
    const Release release = m_services->updates().releases().value("p");
    QCOMPARE(release.version, QString("3.1"));
    QCOMPARE(release.remarks, QString("a\nb"));
    QCOMPARE(release.md5, QString("m"));
    QCOMPARE(release.size, 5000000000);
    QCOMPARE(release.path, QString("http://h/x?y=1"));
}

void TestServicesUpdate::controlSetsTheReleaseOfAPackage()
{
    m_services->packages().add("包.zip", "content");
    QCOMPARE(control("/releases?productId=p&version=2&package=%E5%8C%85.zip").status, 200);
    const Release release = m_services->updates().releases().value("p");
    QCOMPARE(release.md5, QString("9a0364b9e99bb480dd25e1f0284c8555"));
    QCOMPARE(release.size, 7);
    QCOMPARE(Client().get(release.path).body, QByteArray("content"));
}

void TestServicesUpdate::controlSetsAReleaseThatLies()
{
    m_services->packages().add("p.zip", "content");
    QCOMPARE(control("/releases?productId=p&version=2&package=p.zip&md5=wrong&size=1").status, 200);
    const Release release = m_services->updates().releases().value("p");
    QCOMPARE(release.md5, QString("wrong"));
    QCOMPARE(release.size, 1);
    QCOMPARE(release.path, m_services->packageUrl("p.zip"));
}

void TestServicesUpdate::controlRefusesARelease_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QByteArray>("complaint");
    row("nothing", "", QByteArray("\"productId\" must be the id of a product"));
    row("no version", "?productId=p&path=/x", QByteArray("\"version\" must be a version"));
    row("no path", "?productId=p&version=1", QByteArray("\"path\" must be the package's URL"));
    row("unknown package", "?productId=p&version=1&package=x.zip",
        QByteArray("\"x.zip\" is no package; parameter \"package\" is one of "
                   "NelvoEditor-1.0.1.zip"));
    row("size", "?productId=p&version=1&path=/x&size=-1",
        QByteArray("\"size\" must be a number of bytes from 0"));
    row("stray", "?product=p", QByteArray("unknown parameter \"product\""));
}

void TestServicesUpdate::controlRefusesARelease()
{
    QFETCH(const QString, parameters);
    QFETCH(const QByteArray, complaint);
    const Answer answer = control("/releases" + parameters);
    QCOMPARE(answer.status, 400);
    QVERIFY2(answer.body.contains(complaint), answer.body.constData());
    QCOMPARE(m_services->updates().releases().keys(), QStringList("nelvo-editor"));
}

QTEST_GUILESS_MAIN(TestServicesUpdate)
#include "test_services_update.moc"
