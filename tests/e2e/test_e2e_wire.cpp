#include "tests/e2e/pluginhost.h"
#include "tests/e2e/userinput.h"
#include "tests/support/accounts.h"
#include "tests/support/messagelog.h"

#include <services/services.h>

#include <QGuiApplication>
#include <QRegularExpression>
#include <QUrl>
#include <QtTest>

//! Every request of a sign-in, from the first page to the logout, as it went over the wire.
class TestE2eWire : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void signInToTheByte();
};

namespace {

//! The request as text; what is drawn by lot (session ids, tickets) or given by the system (ports) is
//! replaced by its name.
QByteArray transcript(const NelvoDevkit::LoggedRequest& request, const NelvoDevkit::Services& services)
{
    QByteArray text = request.method + ' ' + request.target + '\n';
    for (const NelvoDevkit::LoggedRequest::Header& header : request.headers)
        text += header.name + ": " + header.value + '\n';
    text += '\n' + request.body;
    text.replace(QUrl(services.signInUrl()).authority().toLatin1(), "SIGN-IN");
    text.replace(QUrl(services.editorUrl()).authority().toLatin1(), "EDITOR");

    QString masked = QString::fromUtf8(text);
    masked.replace(QRegularExpression(QStringLiteral("(JSESSIONID|CASTGC|EDITORSESSION|route)=[^;\n]+")),
                   QStringLiteral("\\1=*"));
    masked.replace(QRegularExpression(QStringLiteral("lt=LT%2D\\d+%2D\\w+%2Dcas01%2Eexample%2Eorg&")),
                   QStringLiteral("lt=TICKET&"));
    return masked.toUtf8();
}

QByteArray expected(const QByteArray& line, const QByteArray& host, const QByteArray& ownHeaders,
                    const QByteArray& body = {})
{
    return line + "\nHost: " + host +
           "\nUser-Agent: VarloSoft User Agent v1.0\n"
           "Accept: */*\n"
           "Cache-control: no-cache\n"
           "Pragma: no-cache\n"
           "Accept-Encoding: deflate\n" +
           ownHeaders +
           "Connection: Keep-Alive\n"
           "Accept-Language: en,*\n"
           "\n" +
           body;
}

} // namespace

void TestE2eWire::signInToTheByte()
{
    NelvoDevkit::Services services;
    QString error;
    QVERIFY2(services.start(&error), qPrintable(error));
    const E2e::PluginHost host(services.signInUrl());
    E2e::plugin()->GetLoginMgr()->Start();
    QVERIFY(E2e::activate(host.window()));
    TestSupport::MessageLog log; // keeps the terminal clean
    const auto user = QStringLiteral("müller");
    E2e::submitForm(host.window(), user, TestSupport::passwordOf(user), services.signInUrl());
    QTRY_COMPARE(host.observer.sessions.size(), 1);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();

    const QByteArray form = "Content-Type: application/x-www-form-urlencoded\n";
    const QByteArray cookies = "Cookie: JSESSIONID=*; CASTGC=*; LOCALE=zh_CN\n";
    const QByteArray digest = QCryptographicHash::hash("Gr\xC3\xB6\xC3\x9F"
                                                       "e-9\xC3\xA9",
                                                       QCryptographicHash::Md5)
                                  .toHex();
    const QByteArrayList wire{
        expected("GET /login", "SIGN-IN", form),
        expected("POST /login", "SIGN-IN", form + "Cookie: JSESSIONID=*\nContent-Length: 213\n",
                 "%5FeventId=submit&execution=e1s1&lt=TICKET&productId=86"
                 "&submit=%25E7%2599%25BB%25E5%25BD%2595&username=m%C3%BCller&password=" +
                     digest),
        expected("GET /login/success", "SIGN-IN", "Cookie: JSESSIONID=*; CASTGC=*\n"),
        expected("GET /rs/casLogin/listCompany", "SIGN-IN", form + cookies),
        expected("POST /rs/casLogin/casLogin", "SIGN-IN",
                 "Content-Type: application/json\n" + cookies + "Content-Length: 47\n",
                 "{\n    \"epid\": \"1002\",\n    \"version\": \"1.0.0\"\n}\n"),
        expected("GET /rs/casLogin/serverUrl", "SIGN-IN", cookies),
        expected("GET /rs/cim/nelvo/client_token", "SIGN-IN", cookies),
        // Cookies know hosts and no ports, so those of the sign-in service go along.
        expected("GET /org/heartbeat", "EDITOR", cookies),
        expected("GET /rs/casLogin/logout", "SIGN-IN",
                 "Cookie: JSESSIONID=*; CASTGC=*; LOCALE=zh_CN; EDITORSESSION=*; route=*\n"),
    };
    QByteArrayList sent;
    const QVector<NelvoDevkit::LoggedRequest> requests = services.requests();
    for (const NelvoDevkit::LoggedRequest& request : requests)
        sent.append(transcript(request, services));
    // Qt now and then sends a redirected request twice in a row and drops the second answer.
    sent.erase(std::unique(sent.begin(), sent.end()), sent.end());
    QCOMPARE(sent.size(), wire.size());
    for (int index = 0; index < wire.size(); ++index)
        QCOMPARE(sent.at(index), wire.at(index));
}

QTEST_MAIN(TestE2eWire)
#include "test_e2e_wire.moc"
