#include "bench/processortime.h"
#include "bim/bimprojworker.h"
#include "bim/orgitems.h"
#include "login/casform.h"
#include "login/logincache.h"
#include "project/projectinfomgr.h"
#include "services/signinpages.h"
#include "tests/support/applicationfile.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "tests/updater/ziparchive.h"
#include "updater/unzippackage.h"
#include "web/cookiesjar.h"
#include "web/webclient.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QNetworkCookie>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using NelvoPlugin::CProjectInfoMgr;
using TestSupport::ApplicationFile;
using Work = std::function<void()>;

namespace {

//! A JSON text: `begin`, then `n` elements in which the element's number replaces %1, then `end`.
QByteArray listOf(const char* begin, const char* element, int n, const char* end)
{
    QByteArray text(begin);
    const QString pattern = QString::fromUtf8(element);
    for (int i = 0; i < n; ++i)
        text += (i == 0 ? "" : ",") + pattern.arg(i).toUtf8();
    return text + end;
}

QByteArray jsonReply(const QByteArray& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

//! Sets the service's reply to GET requests of `path`.
void answer(const QString& path, const QByteArray& reply);

Work signInPage(int n)
{
    QByteArray page = NelvoDevkit::formPage({"ticket", "e1s1"});
    page.insert(page.indexOf("</body>"), QByteArray("<p class='a'>text</p>").repeated(n));
    return [page] {
        NelvoPlugin::CasFormValues values;
        QVERIFY(NelvoPlugin::parseLoginArgs(page, values));
    };
}

Work cookiesOfOneAnswer(int n)
{
    QList<QNetworkCookie> cookies;
    for (int i = 0; i < n; ++i)
        cookies.append(QNetworkCookie("c" + QByteArray::number(i), "value"));
    return [cookies] {
        CCookiesJar jar;
        jar.setCookiesFromUrl(cookies, QUrl(QStringLiteral("http://services.example.org/")));
        QCOMPARE(jar.allCookies().size(), 180);
    };
}

NelvoSDK::LoginSession session()
{
    NelvoSDK::LoginSession session;
    session.loggedIn = true;
    session.sdkAddr = QCoreApplication::instance()->property("sdkAddr").toString().toStdWString();
    return session;
}

Work organisation(const QByteArray& body)
{
    answer(QStringLiteral("/org/tree"), jsonReply(body));
    return [] {
        CProjectInfoMgr manager;
        manager.ReflushProjOrgInfo(session());
        NelvoSDK::OrgTreeNode root;
        QVERIFY(manager.GetOrgTree(root));
        QVERIFY(!root.children.empty());
        QStandardItemModel model;
        NelvoPlugin::appendOrgNode(model.invisibleRootItem(), root);
        QStringList ids;
        NelvoPlugin::collectOrgIds(ids, model.invisibleRootItem());
        QVERIFY(!ids.isEmpty());
    };
}

Work wideOrganisation(int n)
{
    return organisation(listOf(R"({"data": {"id": "r", "name": "r", "children": [)",
                               R"({"id": "%1", "name": "n", "children": []})", n, "]}}"));
}

Work projects(int n)
{
    answer(QStringLiteral("/scene/project"),
           jsonReply(listOf(R"({"data": [)", R"({"id": "%1", "name": "n"})", n, "]}")));
    return [n] {
        CProjectInfoMgr manager;
        manager.ReflushProjOrgInfo(session());
        std::list<NelvoSDK::ProjectNode> projects;
        QVERIFY(manager.GetServerProjectTree(projects));
        QCOMPARE(static_cast<int>(projects.size()), n);
    };
}

Work models(int n)
{
    answer(
        QStringLiteral("/bim/relation/"),
        jsonReply(listOf(R"({"data": [)", R"({"nelvo3dId": "%1", "ppName": "n", "deptId": "d"})", n, "]}")));
    return [n] {
        NelvoPlugin::CBimProjWorker worker;
        const QSignalSpy lists(&worker, &NelvoPlugin::CBimProjWorker::sigSyncBimProjList);
        worker.getBimProjList();
        QCOMPARE(lists.at(0).at(0).toJsonArray().size(), n);
    };
}

Work cachedUsers(int n)
{
    const auto file = std::make_shared<ApplicationFile>(QStringLiteral("loginchache.json"));
    std::list<NelvoPlugin::UserCacheEntry> users;
    for (int i = 0; i < n; ++i) {
        NelvoPlugin::UserCacheEntry user;
        user.user = QString::number(i);
        users.push_back(user);
    }
    NelvoPlugin::CLoginCache::writeUsers(users);
    const auto content = file->content();
    return [file, content, n] {
        file->write(content);
        NelvoPlugin::CLoginCache::updateUser(QString::number(n - 1), {}, {}, {});
        std::list<NelvoPlugin::UserCacheEntry> users;
        NelvoPlugin::CLoginCache::readUsers(users);
        QCOMPARE(static_cast<int>(users.size()), n);
    };
}

//! A directory in memory if the system has one, because the speed of a disk depends on its other work.
std::shared_ptr<QTemporaryDir> fastDirectory()
{
    const QFileInfo memory(QStringLiteral("/dev/shm"));
    const QString place = memory.isWritable() ? memory.filePath() : QDir::tempPath();
    return std::make_shared<QTemporaryDir>(place + QStringLiteral("/nelvo-growth-XXXXXX"));
}

Work unpacking(int n, bool isEachNameThereTwice)
{
    const auto directory = fastDirectory();
    ZipArchive archive;
    for (int i = 0; i < n; ++i)
        archive.add("file" + QByteArray::number(isEachNameThereTwice ? i % (n / 2) : i), "content");
    const QString package = directory->filePath(QStringLiteral("package.zip"));
    QFile file(package);
    if (!file.open(QIODevice::WriteOnly) || file.write(archive.bytes()) < 0)
        qFatal("cannot write the package file");
    return
        [directory, package] { QVERIFY(unzipPackage(package, directory->filePath(QStringLiteral("out")))); };
}

Work entries(int n)
{
    return unpacking(n, false);
}

Work duplicates(int n)
{
    return unpacking(n, true);
}

struct Input {
    const char* name;
    Work (*prepare)(int n);
    int n;
};

const Input Inputs[] = {
    {"elements of a sign-in page", signInPage, 20000},
    {"cookies of one answer", cookiesOfOneAnswer, 5000},
    {"units of an organisation", wideOrganisation, 20000},
    {"projects", projects, 10000},
    {"models", models, 10000},
    {"users in the cache", cachedUsers, 5000},
    {"entries of a package", entries, 1000},
    {"entries of a package, each name twice", duplicates, 1000},
};

TestSupport::StartedServices* services = nullptr;

void answer(const QString& path, const QByteArray& reply)
{
    services->setRawAnswer("GET", path, {reply});
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double processorSeconds(const Work& work)
{
    const double before = Bench::processorSeconds();
    work();
    return Bench::processorSeconds() - before;
}

} // namespace

Q_DECLARE_METATYPE(const Input*)

//! Twice the input takes less than three times the processor time. Quadratic growth would take four times.
class TestGrowth : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void twiceAsMuchCostsTwiceAsMuch_data();
    void twiceAsMuchCostsTwiceAsMuch();

private:
    std::unique_ptr<TestSupport::StartedServices> m_services;
};

void TestGrowth::initTestCase()
{
    m_services = std::make_unique<TestSupport::StartedServices>();
    services = m_services.get();
    QCoreApplication::instance()->setProperty("sdkAddr", m_services->editorUrl());
}

void TestGrowth::cleanupTestCase()
{
    services = nullptr;
}

void TestGrowth::twiceAsMuchCostsTwiceAsMuch_data()
{
    QTest::addColumn<const Input*>("input");
    for (const Input& input : Inputs)
        QTest::newRow(input.name) << &input;
}

void TestGrowth::twiceAsMuchCostsTwiceAsMuch()
{
    constexpr int fewestRounds = 3;
    constexpr int mostRounds = 20;
    constexpr double bound = 3;
    QFETCH(const Input*, input);
    const TestSupport::MessageLog log;
    // The median ignores the few rounds that other programs disturb.
    std::vector<double> ratios;
    for (int round = 0; round < mostRounds && (round < fewestRounds || median(ratios) >= bound); ++round) {
        const double once = processorSeconds(input->prepare(input->n));
        ratios.push_back(processorSeconds(input->prepare(2 * input->n)) / once);
    }
    QVERIFY2(median(ratios) < bound, qPrintable(QString::number(median(ratios))));
}

QTEST_GUILESS_MAIN(TestGrowth)
#include "test_growth.moc"
