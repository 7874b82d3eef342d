#include "tests/e2e/pluginhost.h"
#include "tests/support/accounts.h"
#include "tests/support/messagelog.h"

#include <services/services.h>

#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonObject>
#include <QtTest>

//! The watch on the session with its real ten seconds.
class TestE2eHeartbeat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pushOutArrivesByItself();
};

namespace {

class MessageObserver final : public NelvoSDK::IMessageObserver
{
public:
    void OnMessageFirst(const QString& text) override { first.append(text); }
    void OnMessageSecond(const QString&) override {}
    void OnMessageThird(const QString&) override {}

    QStringList first;
};

NelvoSDK::LoginSession signIn(const E2e::PluginHost& host, const QString& url)
{
    const auto user = QStringLiteral("zhangwei");
    QString message;
    QMetaObject::invokeMethod(host.loginCtrl(), "login", Q_RETURN_ARG(QString, message), Q_ARG(QString, user),
                              Q_ARG(QString, TestSupport::passwordOf(user)), Q_ARG(QString, url),
                              Q_ARG(QString, QString()));
    QMetaObject::invokeMethod(host.loginCtrl(), "onLogin", Q_ARG(QString, url),
                              Q_ARG(QString, QStringLiteral("1001")), Q_ARG(QString, QStringLiteral("x")));
    QMetaObject::invokeMethod(host.loginCtrl(), "onShowHome");
    return host.observer.sessions.isEmpty() ? NelvoSDK::LoginSession{} : host.observer.sessions.constLast();
}

} // namespace

void TestE2eHeartbeat::pushOutArrivesByItself()
{
    constexpr int Patience = 60000;
    NelvoDevkit::Services services;
    QVERIFY(services.start());
    const E2e::PluginHost host(services.signInUrl());
    MessageObserver observer;
    E2e::plugin()->GetMessageMgr()->Attach(&observer);
    TestSupport::MessageLog log;
    NelvoSDK::IProjectInfoMgr* projects = E2e::plugin()->GetProjectInfoMgr();
    projects->SetPlugin(E2e::plugin());
    const NelvoSDK::LoginSession session = signIn(host, services.signInUrl());
    projects->ReflushProjOrgInfo(session);
    services.clearRequests();

    // The cookies that the sign-in captured identify the client.
    QTRY_VERIFY_WITH_TIMEOUT(!services.requests().isEmpty(), Patience);
    QCOMPARE(services.requests().constFirst().target, QByteArray("/org/heartbeat"));
    const QString cookies = QString::fromStdWString(session.cookies);
    const QByteArray sent = services.requests().constFirst().header("Cookie");
    QVERIFY(sent.startsWith("EDITORSESSION="));
    QVERIFY(cookies.startsWith(QString::fromLatin1(sent.left(sent.indexOf(';')))));
    QVERIFY(observer.first.isEmpty());

    services.setReply("GET", QStringLiteral("/org/heartbeat"),
                      {401, "application/json", R"({"infoCode":"1007"})", {}});
    QTRY_VERIFY_WITH_TIMEOUT(!observer.first.isEmpty(), Patience);
    QCOMPARE(observer.first.constFirst(), QStringLiteral("您的帐号在另一地点登录，您被迫下线"));
    E2e::plugin()->GetMessageMgr()->Detach(&observer);
}

QTEST_MAIN(TestE2eHeartbeat)
#include "test_e2e_heartbeat.moc"
