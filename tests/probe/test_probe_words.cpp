
#include "commandline/commandline.h"

#include "probe/explanation.h"
#include "probe/formpage.h"
#include "probe/probeoptions.h"
#include "probe/redaction.h"
#include "probe/report.h"
#include "tests/support/row.h"

#include <QtTest>

using namespace NelvoDevkit;

using TestSupport::row;

namespace {

const QStringList Required{"nelvo-probe", "--user", "lina", "--url", "http://s:80"};

//! A form page. Its section has the class `section` and contains `inputs`.
QByteArray page(const QByteArray& section, const QByteArray& inputs, const QByteArray& root = "<html>")
{
    return "<!DOCTYPE html>" + root +
           "<body id=\"cas\"><div id=\"container\"><div id=\"content\"><div id=\"login\">"
           "<form><p>a&nbsp;b</p><section class=\"" +
           section + "\">" + inputs + "</section></form></div></div></div></body></html>";
}

const QByteArray Inputs{"<input name=\"lt\" value=\"LT-1\"/><input name=\"execution\" value=\"e1\"/>"
                        "<input name=\"_eventId\" value=\"submit\"/>"};

} // namespace

//! The texts that nelvo-probe reads and prints. No server is involved.
class TestProbeWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreExplained_data();
    void textsAreExplained();
    void unknownTextIsNotExplained();
    void formPages_data();
    void formPages();
    void secretsAreHidden_data();
    void secretsAreHidden();
    void shortSecretsAreNotGivenAway();
    void accountsAreMasked();
    void reportHidesWhatTheLogHolds();
    void tableObeysNoServer();
    void onlyWellAndNotAskedAreWell();
    void options();
    void environmentGivesPasswords();
    void mistakes_data();
    void mistakes();
};

void TestProbeWords::textsAreExplained_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("words");
    const auto row = [](const char* text, const char* words) {
        QTest::addRow("%s: %s", text, words) << QString::fromUtf8(text) << QString::fromUtf8(words);
    };
    row("Host nowhere.invalid not found", "no host of the name nowhere.invalid");
    row("Connection refused", "refused: check host and port");
    row("Network unreachable", "no way leads to the host");
    row("Host unreachable", "no way leads to the host");
    row("Socket operation timed out", "the connection timed out");
    row("Connection closed", "closed the connection before its reply was complete");
    row("Connection closed", "by https://, the port does not speak TLS");
    row("Unable to write", "broke off before the whole request was sent");
    row("Permission denied", "lets no connection out");
    row("The address is not available", "has no free port");
    row("SSL handshake failed", "certificate is not trusted here");
    row("SSL handshake failed", "the port does not speak TLS");
    row("Error creating SSL context (No cipher suites in common)",
        "no encrypted connection came about: Windows could not begin one (No cipher suites in common)");
    row("Failed to query the TLS context: Internal error", "broke down in Windows: Internal error");
    row("Schannel failed to encrypt data: An internal handle was invalid",
        "broke down in Windows: An internal handle was invalid");
    row("The message was tampered with, damaged or out of sequence.", "damaged on its way");
    row("A message was received out of sequence.", "damaged on its way");
    row("The certificate is self-signed, and untrusted", "a self-signed certificate, or an authority");
    row("The root certificate of the certificate chain is self-signed, and untrusted",
        "an authority that this machine does not trust");
    row("The root CA certificate is not trusted for this purpose",
        "a self-signed certificate, or an authority that this machine does not trust");
    row("The issuer certificate could not be found", "an authority that this machine does not know");
    row("No certificates could be verified", "keeps the certificates between to itself");
    row("TLS initialization failed", "OpenSSL libraries");
    row("Proxy requires authentication", "the proxy");
    row("Host requires authentication", "asks for HTTP authentication");
    row("Too many redirects", "in a circle");
    row("Error transferring http://s/login - server replied: Bad Gateway", "HTTP error: Bad Gateway");
    row("Protocol \"ftp\" is unknown", "begin with \"ftp\"");
    row("parse json failed: illegal value", "the reply is no JSON: illegal value");
    row("parseLoginArgs failed", "the form page cannot be read");
    row("query error", "the form page cannot be read");
    row("parsePostResult failed", "the page that answers the form cannot be read");
    row("read compList failed", "the enterprise list is no JSON");
    row("获取代理地址失败, 请检查服务器部署", "the address list names no editor service (\"varlo-editor\")");
    row("CLoginActor::onLogin getprojList /org/heartbeat falied!", "did not answer its heartbeat");
    row("CProjectInfoMgr::ReflushProjOrgInfo /org/tree error!", "the organisation tree did not come");
    row("CProjectInfoMgr::GetServerProjectTree getprojList /scene/project falied!",
        "the list of scene projects did not come");
    row("CProjectInfoMgr::getBimProjList getprojList /scene/project falied!",
        "the list of BIM models did not come");
    row("CProjectInfoMgr::getDWGBimProjList getprojList /scene/project falied!",
        "the list of DWG drawings did not come");
    row("open file  /x/updateConfig.json failed: No such file or directory",
        "the probe does not: /x/updateConfig.json");
}

void TestProbeWords::textsAreExplained()
{
    QFETCH(QString, text);
    QFETCH(QString, words);
    QVERIFY2(explain(text).contains(words), qPrintable(explain(text)));
}

void TestProbeWords::unknownTextIsNotExplained()
{
    QCOMPARE(explain(QStringLiteral("    \"epid\": \"1001\",")), QString());
    QCOMPARE(explain(QString()), QString());
}

void TestProbeWords::formPages_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::addColumn<QString>("fault");
    row("right", page("row btn-row", Inputs), QString());
    row("other section", page("row", Inputs), "lacks the section that is looked for, html/body[@id='cas']");
    row("no body", QByteArray("<html><head/></html>"),
        "looked for, html/body[@id='cas']/div[@id='container']/div[@id='content']"
        "/div[@id='login']/form/section[@class='row btn-row']; "
        "it ends at html/body[@id='cas']");
    row("no input", page("row btn-row", {}),
        "the form page's section lacks the hidden inputs lt, execution, _eventId, or their values");
    row("no value", page("row btn-row", QByteArray(Inputs).replace("LT-1", " ")),
        "lacks the hidden inputs lt, or their values");
    row("namespace", page("row btn-row", Inputs, "<html xmlns=\"http://www.w3.org/1999/xhtml\">"),
        "XML namespace (xmlns)");
    row("open tag", QByteArray("<html>\n<body><br></body></html>"), "not well-formed XML: line 2, column ");
    row("JSON", QByteArray("{}"), "not well-formed XML: line 1, column ");
    row("empty", QByteArray(), "not well-formed XML");
}

void TestProbeWords::formPages()
{
    QFETCH(QByteArray, page);
    QFETCH(QString, fault);
    const QString found = formPageFault(page);
    QVERIFY2(fault.isEmpty() ? found.isEmpty() : found.contains(fault), qPrintable(found));
}

void TestProbeWords::secretsAreHidden_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("redacted");
    const auto row = [](const char* name, const char* text, const char* redacted) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(redacted);
    };
    row("password", "x Größe-9é y", "x *** y");
    row("password in a form", "p=Gr%C3%B6%C3%9Fe-9%C3%A9&", "p=***&");
    row("MD5", "is deb548df0333d7aa67e2d74425978ed5.", "is ***.");
    row("Base64", "R3LDtsOfZS05w6k=", "***");
    row("cookie", "a 0123abcd b", "a *** b");
    row("second cookie", "a node7 b", "a *** b");
    row("attributes stay", "Path=/ at s.example.org", "Path=/ at s.example.org");
    row("account", "/home/lina/app", "/home/l***/app");
    row("user part", "http://me:mine@s/login", "http://***@s/login");
    row("session in a URL", "http://s/login;jsessionid=AB12?x=1", "http://s/login;jsessionid=***?x=1");
    row("ticket in a URL", "http://s/?a=1&ticket=ST-1-xyz", "http://s/?a=1&ticket=***");
}

void TestProbeWords::secretsAreHidden()
{
    QFETCH(QString, text);
    QFETCH(QString, redacted);
    Redaction redaction;
    redaction.hidePassword(QStringLiteral("Größe-9é"));
    redaction.hide(QStringLiteral("lina"), maskedAccount(QStringLiteral("lina")));
    redaction.hideCookies(QStringLiteral("EDITORSESSION=0123abcd; expires=Thu, 01-Jan-2030 00:00:10 GMT; "
                                         "domain=s.example.org; path=/,route=node7; path=/"));
    QCOMPARE(redaction.redacted(text), redacted);
}

//! If the report replaced each "1" by stars, it would reveal the password.
void TestProbeWords::shortSecretsAreNotGivenAway()
{
    Redaction redaction;
    redaction.hidePassword(QStringLiteral("1"));
    QCOMPARE(redaction.redacted(QStringLiteral("line 1")), QStringLiteral("line 1"));
}

void TestProbeWords::accountsAreMasked()
{
    QCOMPARE(maskedAccount(QStringLiteral("lina")), QStringLiteral("l***"));
    QCOMPARE(maskedAccount(QStringLiteral("陈晓明")), QStringLiteral("陈***"));
    QCOMPARE(maskedAccount(QStringLiteral("x")), QStringLiteral("***"));
}

//! The report redacts log lines of known kinds, and only counts lines of other kinds.
void TestProbeWords::reportHidesWhatTheLogHolds()
{
    Report report;
    report.options.user = QStringLiteral("lina");
    report.options.url = QStringLiteral("http://me:mine@s:80");
    report.redaction.hidePassword(QStringLiteral("secret99"));
    report.messages = {{QtDebugMsg, QStringLiteral("cookiesList: a=b")},
                       {QtWarningMsg, QStringLiteral("Error transferring http://s/?p=secret99 - server "
                                                     "replied: No secret99")}};
    const QString text = report.text();
    QVERIFY2(text.contains(QStringLiteral("http://***@s:80 as l***\n")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("  Error transferring http://s/?p=*** - server replied: No ***\n"
                                          "    the server answered with an HTTP error: No ***\n"
                                          "  lines of other kinds, which are left out: 1\n")),
             qPrintable(text));
    QVERIFY(!text.contains(QStringLiteral("secret99")));
    QVERIFY(!text.contains(QStringLiteral("a=b")));
    QVERIFY(!text.contains(QStringLiteral("lina")));
}

void TestProbeWords::tableObeysNoServer()
{
    Report report;
    report.findings.set({Step::Updates, Verdict::Wrong, 7, QStringLiteral("a\n\x1b[2Jb"), true});
    const QString table = report.table();
    QVERIFY2(table.contains(QStringLiteral("7 ms  a [2Jb (asked directly)\n")), qPrintable(table));
}

void TestProbeWords::onlyWellAndNotAskedAreWell()
{
    Findings findings;
    QVERIFY(!findings.areAllWell());
    for (const StepInfo& info : allSteps())
        findings.set({info.step, Verdict::Well});
    QVERIFY(findings.areAllWell());
    findings.set({Step::Updates, Verdict::NotAsked});
    QVERIFY(findings.areAllWell());
    findings.set({Step::Token, Verdict::NotReached});
    QVERIFY(!findings.areAllWell());
    findings.set({Step::Token, Verdict::Wrong});
    QVERIFY(!findings.areAllWell());
    QCOMPARE(findings.wrongCount(), 1);
}

void TestProbeWords::options()
{
    const auto options = ProbeOptions::parse({"nelvo-probe",
                                              "--user",
                                              "lina",
                                              "--url",
                                              "s:80",
                                              "--enterprise",
                                              "7",
                                              "--plugin",
                                              "/p",
                                              "--update-url",
                                              "https://u",
                                              "--update-token",
                                              "t",
                                              "--product",
                                              "e",
                                              "--timeout",
                                              "5",
                                              "--json",
                                              "--report",
                                              "r",
                                              "--certificate",
                                              "c",
                                              "--password",
                                              ""});
    QVERIFY(options);
    QCOMPARE(options->url, QStringLiteral("http://s:80"));
    QCOMPARE(*options->enterprise, 7);
    QCOMPARE(options->pluginFolders, QStringList{QFileInfo(QStringLiteral("/p")).absoluteFilePath()});
    QCOMPARE(options->updateUrl, QStringLiteral("https://u"));
    QCOMPARE(options->updateToken, QStringLiteral("t"));
    QCOMPARE(options->product, QStringLiteral("e"));
    QVERIFY(options->patience == std::chrono::seconds(5));
    QVERIFY(options->json);
    QCOMPARE(options->reportFile, QStringLiteral("r"));
    QCOMPARE(options->certificateFile, QStringLiteral("c"));
    QVERIFY(options->password && options->password->isEmpty());
}

void TestProbeWords::environmentGivesPasswords()
{
    QVERIFY(!ProbeOptions::parse(Required)->password);
    qputenv("NELVO_PROBE_PASSWORD", "from environment");
    const auto fromEnvironment = ProbeOptions::parse(Required);
    const auto fromOption = ProbeOptions::parse(Required + QStringList{"--password", "given"});
    qunsetenv("NELVO_PROBE_PASSWORD");
    QCOMPARE(*fromEnvironment->password, QStringLiteral("from environment"));
    QCOMPARE(*fromOption->password, QStringLiteral("given"));
}

void TestProbeWords::mistakes_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* name, const QStringList& arguments, const char* error) {
        QTest::newRow(name) << arguments << QString::fromUtf8(error);
    };
    row("nothing", {"nelvo-probe"}, "'--user' is missing");
    row("no address", {"nelvo-probe", "--user", "u"}, "'--url' is missing");
    row("no web address", {"nelvo-probe", "--user", "u", "--url", "ftp://s"},
        "'--url' takes an address such as https://host:port");
    row("no host", {"nelvo-probe", "--user", "u", "--url", "http://"},
        "'--url' takes an address such as https://host:port");
    row("slash at the end", {"nelvo-probe", "--user", "u", "--url", "http://s/"},
        "'--url' takes no slash at its end: paths are put behind it");
    row("enterprise without a number", Required + QStringList{"--enterprise", "x"},
        "'--enterprise' takes a number");
    row("no product", Required + QStringList{"--update-url", "http://u"},
        "'--update-url' needs '--product' as well");
    row("no update address", Required + QStringList{"--update-url", "u://", "--product", "e"},
        "'--update-url' takes an address such as https://host:port");
    row("no time", Required + QStringList{"--timeout", "0"}, "'--timeout' takes a number of seconds above 0");
    row("loose argument", Required + QStringList{"blue"}, "unknown argument 'blue'");
    row("unknown option", Required + QStringList{"--colour"}, "Unknown option 'colour'");
}

void TestProbeWords::mistakes()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    try {
        ProbeOptions::parse(arguments);
        QFAIL("the program accepts the wrong arguments");
    } catch (const Failure& failure) {
        QCOMPARE(failure.text, error + QStringLiteral("; --help lists the options"));
        QCOMPARE(failure.status, 2);
    }
}

QTEST_GUILESS_MAIN(TestProbeWords)
#include "test_probe_words.moc"
