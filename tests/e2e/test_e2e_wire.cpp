#include "tests/e2e/loginform.h"
#include "tests/e2e/pluginhost.h"
#include "tests/e2e/wire.h"
#include "tests/support/accounts.h"
#include "tests/support/files.h"
#include "tests/support/messagelog.h"
#include "tests/support/startedservices.h"
#include "userinput/userinput.h"

#include <QGuiApplication>
#include <QtTest>

//! Every request of a sign-in, from the first page to the logout, as sent to the services.
class TestE2eWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signInToTheByte();
};

void TestE2eWire::signInToTheByte()
{
    TestSupport::StartedServices services;
    const E2e::PluginHost host(services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(UserInput::activate(host.window()));
    TestSupport::MessageLog log; // keeps the terminal clean
    const auto user = QStringLiteral("müller");
    E2e::submitForm(host.window(), user, TestSupport::passwordOf(user), services.signInUrl());
    QTRY_COMPARE(host.observer.sessions.size(), 1);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();

    const QByteArray form = "Content-Type: application/x-www-form-urlencoded\n";
    const QByteArray cookies = "Cookie: JSESSIONID=*; CASTGC=*; LOCALE=zh_CN\n";
    const QByteArray digest = TestSupport::md5("Gr\xC3\xB6\xC3\x9F"
                                               "e-9\xC3\xA9")
                                  .toLatin1();
    const QByteArrayList wire{
        E2e::request("GET /login", "SIGN-IN", form),
        E2e::request("POST /login", "SIGN-IN", form + "Cookie: JSESSIONID=*\nContent-Length: 213\n",
                     "%5FeventId=submit&execution=e1s1&lt=TICKET&productId=86"
                     "&submit=%25E7%2599%25BB%25E5%25BD%2595&username=m%C3%BCller&password=" +
                         digest),
        E2e::request("GET /login/success", "SIGN-IN", "Cookie: JSESSIONID=*; CASTGC=*\n"),
        E2e::request("GET /rs/casLogin/listCompany", "SIGN-IN", form + cookies),
        E2e::request("POST /rs/casLogin/casLogin", "SIGN-IN",
                     "Content-Type: application/json\n" + cookies + "Content-Length: 47\n",
                     "{\n    \"epid\": \"1002\",\n    \"version\": \"1.0.0\"\n}\n"),
        E2e::request("GET /rs/casLogin/serverUrl", "SIGN-IN", cookies),
        E2e::request("GET /rs/cim/nelvo/client_token", "SIGN-IN", cookies),
        // Cookies apply to hosts, not to ports, so those of the sign-in service are sent too.
        E2e::request("GET /org/heartbeat", "EDITOR", cookies),
        E2e::request("GET /rs/casLogin/logout", "SIGN-IN",
                     "Cookie: JSESSIONID=*; CASTGC=*; LOCALE=zh_CN; EDITORSESSION=*; route=*\n"),
    };
    QByteArrayList sent = E2e::receivedBy(services);
    // Qt sometimes sends a redirected request twice and drops the second reply.
    sent.erase(std::unique(sent.begin(), sent.end()), sent.end());
    QCOMPARE(sent.size(), wire.size());
    for (int index = 0; index < wire.size(); ++index)
        QCOMPARE(sent.at(index), wire.at(index));
}

E2E_MAIN(TestE2eWire)
#include "test_e2e_wire.moc"
