#include "tests/e2e/pluginhost.h"
#include "tests/support/messagelog.h"
#include "tests/support/recorders.h"
#include "tests/support/startedservices.h"

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QtTest>

//! The session watch with its real interval of ten seconds.
class TestE2eHeartbeat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pushOutArrivesByItself();
};

void TestE2eHeartbeat::pushOutArrivesByItself()
{
    constexpr int patience = 60000;
    TestSupport::StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    TestSupport::MessageRecorder observer;
    E2e::plugin()->GetMessageMgr()->Attach(&observer);
    TestSupport::MessageLog log;
    NelvoSDK::IProjectInfoMgr* projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    const NelvoSDK::LoginSession session = host.signIn(services.signInUrl(), QStringLiteral("zhangwei"));
    projects->ReflushProjOrgInfo(session);
    NelvoSDK::OrgTreeNode root;
    QVERIFY(projects->GetOrgTree(root));
    QVERIFY(!root.children.empty());
    services.log().clear();

    // The cookies of the sign-in identify the client.
    QTRY_VERIFY_WITH_TIMEOUT(!services.log().requests().isEmpty(), patience);
    QCOMPARE(services.log().requests().constFirst().target, QByteArray("/org/heartbeat"));
    const QString cookies = QString::fromStdWString(session.cookies);
    const QByteArray sent = services.log().requests().constFirst().header("Cookie");
    QVERIFY(sent.startsWith("EDITORSESSION="));
    QVERIFY(cookies.startsWith(QString::fromLatin1(sent.left(sent.indexOf(';')))));
    QVERIFY(observer.heard.isEmpty());

    services.editor().pushOut(QStringLiteral("zhangwei"));
    QTRY_VERIFY_WITH_TIMEOUT(!observer.heard.isEmpty(), patience);
    QCOMPARE(observer.heard.constFirst(), QStringLiteral("first:您的帐号在另一地点登录，您被迫下线"));
    E2e::plugin()->GetMessageMgr()->Detach(&observer);
}

E2E_MAIN(TestE2eHeartbeat)
#include "test_e2e_heartbeat.moc"
