#include "tests/docs/exchangetext.h"
#include "tests/docs/page.h"
#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QDir>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>

using NelvoDevkit::Exchange;

namespace {

const auto Kind = QStringLiteral("recorded");
const auto User = QStringLiteral("zhangwei");
constexpr int WaitMilliseconds = 30000;

//! A request with an example on the page.
struct Example {
    QString name;
    QByteArray method;
    QByteArray path;
};

const QVector<Example> SignIn{
    {QStringLiteral("form-page"), "GET", "/login"},
    {QStringLiteral("form"), "POST", "/login"},
    {QStringLiteral("welcome-page"), "GET", "/login/success"},
    {QStringLiteral("enterprises"), "GET", "/rs/casLogin/listCompany"},
    {QStringLiteral("binding"), "POST", "/rs/casLogin/casLogin"},
    {QStringLiteral("addresses"), "GET", "/rs/casLogin/serverUrl"},
    {QStringLiteral("client-token"), "GET", "/rs/cim/nelvo/client_token"},
    {QStringLiteral("first-heartbeat"), "GET", "/org/heartbeat"},
};
const QVector<Example> Projects{
    {QStringLiteral("organisation"), "GET", "/org/tree"},
    {QStringLiteral("projects"), "GET", "/scene/project"},
    {QStringLiteral("new-project"), "POST", "/scene/project"},
    {QStringLiteral("new-name"), "PUT", "/scene/project"},
    {QStringLiteral("delete-bindings"), "POST", "/equipment/bind/deleteAll/scene-1001-01"},
    {QStringLiteral("add-bindings"), "POST", "/equipment/bind/batchAdd/scene-1001-01"},
    {QStringLiteral("heartbeat"), "GET", "/org/heartbeat"},
};
const QVector<Example> PushOut{{QStringLiteral("push-out"), "GET", "/org/heartbeat"}};
const QVector<Example> Models{
    {QStringLiteral("bim-models"), "GET", "/bim/relation/"},
    {QStringLiteral("dwg-models"), "GET", "/bim/relation/dwg"},
};
const QVector<Example> Update{
    {QStringLiteral("latest-release"), "POST", "/v1.0/service/sys/productVersion/findLatest"},
    {QStringLiteral("package"), "GET", "/packages/NelvoEditor-1.0.1.zip"},
};
const QVector<Example> Logout{{QStringLiteral("logout"), "GET", "/rs/casLogin/logout"}};

bool isOf(const Exchange& exchange, const Example& example)
{
    return exchange.request.method == example.method && exchange.request.path() == example.path;
}

bool hasExample(const Exchange& exchange)
{
    static const QVector<Example> all = SignIn + Projects + PushOut + Models + Update + Logout;
    return std::any_of(all.begin(), all.end(),
                       [&exchange](const Example& example) { return isOf(exchange, example); });
}

//! Adds the keys of all objects in `value` to `keys`.
void collectKeys(const QJsonValue& value, QSet<QString>& keys)
{
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        keys.insert(member.key());
        collectKeys(*member, keys);
    }
    const QJsonArray list = value.toArray();
    for (const QJsonValue& row : list)
        collectKeys(row, keys);
}

QObject* objectOf(NelvoSDK::IPdsMgr* manager)
{
    return dynamic_cast<QObject*>(manager);
}

} // namespace

//! Compares the examples in the services' contract with real requests and replies: the plug-in runs all its
//! operations on services against the simulator. With NELVO_RECORD=1 in the environment, the test writes the
//! requests and replies to the page first.
class TestServicesReference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void examplesAreWhatIsSaid_data();
    void examplesAreWhatIsSaid();
    void everyExampleIsShown();
    void everyFieldIsExplained();

private:
    void updateItself();
    void workWithProjects(const NelvoSDK::LoginSession& session);
    void beat();
    void readModels();
    void quit();
    void take(const QVector<Example>& examples);
    void clearUpdateFiles() const;

    //! The texts of the examples by name, and the names in the order of the requests.
    QMap<QString, QString> m_texts;
    QStringList m_names;
    QSet<QString> m_fields;
    Docs::Page m_page{QStringLiteral("services.md")};
    std::unique_ptr<TestSupport::StartedServices> m_services;
};

void TestServicesReference::initTestCase()
{
    NelvoDevkit::ServicesOptions options;
    options.keepsReplies = true;
    m_services = std::make_unique<TestSupport::StartedServices>(options);
    const TestSupport::MessageLog log; // keeps the terminal clean
    clearUpdateFiles();
    const E2e::PluginHost host(m_services->signInUrl());

    updateItself();
    take(Update);
    const NelvoSDK::LoginSession session = host.signIn(m_services->signInUrl(), User);
    const QVector<Exchange> exchanges = m_services->log().exchanges();
    QVERIFY(!exchanges.isEmpty());
    m_names.append(QStringLiteral("every-request"));
    m_texts.insert(m_names.last(), Docs::requestText(exchanges.first(), *m_services));
    take(SignIn);
    workWithProjects(session);
    beat();
    take(Projects);
    readModels();
    take(Models);
    m_services->editor().pushOut(User);
    beat();
    take(PushOut);
    quit();
    take(Logout);
}

void TestServicesReference::cleanupTestCase()
{
    clearUpdateFiles();
}

//! The version check and the download, without the installation.
void TestServicesReference::updateItself()
{
    QSignalSpy answered(E2e::updater(), SIGNAL(needUpdate(bool)));
    QSignalSpy downloaded(E2e::updater(), SIGNAL(downloadFinished(QString)));
    E2e::checkVersion(m_services->updateUrl(), m_services->updates().token(), QStringLiteral("nelvo-editor"));
    QCOMPARE(answered.value(0).value(0).toBool(), true);
    E2e::callUpdater("download");
    QTRY_COMPARE_WITH_TIMEOUT(downloaded.size(), 1, WaitMilliseconds);
}

void TestServicesReference::workWithProjects(const NelvoSDK::LoginSession& session)
{
    NelvoSDK::IProjectInfoMgr& manager = *E2e::plugin()->GetProjectInfoMgr();
    manager.SetPlugin(E2e::plugin());
    manager.ReflushProjOrgInfo(session);
    std::list<NelvoSDK::ProjectNode> listed;
    QVERIFY(manager.GetServerProjectTree(listed));

    NelvoSDK::ProjectNode added;
    added.id = L"scene-new";
    added.name = L"湖滨公园";
    added.attrs = {{L"deptId", L"1001-11"}};
    manager.AddLocalProject({added.id, added.name, added.attrs});
    manager.OnUploadProject(added, nullptr, true);
    NelvoSDK::ProjectNode renamed = listed.front();
    renamed.name = L"滨江文化中心（二期）";
    manager.OnUploadProject(renamed, nullptr, true);
    manager.OnUploadSdkProperty(QString::fromStdWString(renamed.id), {{"g1", "SN1"}, {"g2", "SN2"}});
}

//! Makes the session watch send a request now, without its timer.
void TestServicesReference::beat()
{
    QTimerEvent event(0);
    QCoreApplication::sendEvent(dynamic_cast<QObject*>(E2e::plugin()->GetProjectInfoMgr()), &event);
}

void TestServicesReference::readModels()
{
    NelvoSDK::IPdsMgr* const manager = E2e::plugin()->GetPdsMgr();
    QSignalSpy arrived(objectOf(manager), SIGNAL(bimProjListChanged()));
    QMetaObject::invokeMethod(objectOf(manager), "getBimProj");
    QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), 1, WaitMilliseconds);
    QMetaObject::invokeMethod(objectOf(manager), "getDWGBimProj");
    QTRY_COMPARE_WITH_TIMEOUT(arrived.size(), 2, WaitMilliseconds);
}

void TestServicesReference::quit()
{
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

//! Takes the examples from the requests since the last call. Each example is the first matching request: Qt
//! sometimes sends a redirected request twice, and the session watch sends several.
void TestServicesReference::take(const QVector<Example>& examples)
{
    const QVector<Exchange> exchanges = m_services->log().exchanges();
    m_services->log().clear();
    for (const Example& example : examples) {
        const auto said = std::find_if(exchanges.begin(), exchanges.end(),
                                       [&example](const Exchange& it) { return isOf(it, example); });
        QVERIFY2(said != exchanges.end(), qPrintable(example.name));
        m_names.append(example.name);
        m_texts.insert(example.name, Docs::exchangeText(*said, *m_services));
    }
    for (const Exchange& exchange : exchanges) {
        QVERIFY2(hasExample(exchange), exchange.request.target.constData());
        const QJsonDocument reply = QJsonDocument::fromJson(exchange.reply.body);
        collectKeys(reply.object(), m_fields);
        collectKeys(reply.array(), m_fields);
    }
}

void TestServicesReference::clearUpdateFiles() const
{
    const QDir directory(QCoreApplication::applicationDirPath());
    QDir(directory.filePath(QStringLiteral("NelvoUpdate"))).removeRecursively();
    QFile::remove(directory.filePath(QStringLiteral("NelvoUpdateState.dat")));
}

void TestServicesReference::examplesAreWhatIsSaid_data()
{
    QTest::addColumn<QString>("name");
    for (const QString& name : qAsConst(m_names))
        QTest::newRow(qPrintable(name)) << name;
}

void TestServicesReference::examplesAreWhatIsSaid()
{
    QFETCH(QString, name);
    if (qEnvironmentVariableIsSet("NELVO_RECORD"))
        QVERIFY2(m_page.replace(Kind, name, m_texts[name]),
                 "services.md has no block with this name, or cannot be written");
    // Compares line by line, so that the failure text shows the differing line.
    const QStringList shown = m_page.block(Kind, name).split(QLatin1Char('\n'));
    const QStringList said = m_texts[name].split(QLatin1Char('\n'));
    for (int line = 0; line < std::min(shown.size(), said.size()); ++line)
        QCOMPARE(shown.at(line), said.at(line));
    QCOMPARE(shown.size(), said.size());
}

void TestServicesReference::everyExampleIsShown()
{
    QStringList shown = m_page.names(Kind);
    shown.sort();
    QStringList said = m_names;
    said.sort();
    QCOMPARE(shown, said);
}

void TestServicesReference::everyFieldIsExplained()
{
    QVERIFY(!m_fields.isEmpty());
    for (const QString& field : qAsConst(m_fields))
        QVERIFY2(m_page.text().contains(QLatin1Char('`') + field + QLatin1Char('`')), qPrintable(field));
}

E2E_MAIN(TestServicesReference)
#include "test_services_reference.moc"
