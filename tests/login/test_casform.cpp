#include "login/casform.h"

#include "tests/support/messagelog.h"
#include "tests/support/row.h"

#include <QElapsedTimer>
#include <QtTest>

using NelvoPlugin::CasFormValues;
using TestSupport::MessageLog;
using TestSupport::row;

class TestCasForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheHiddenValues();
    void namedEntitiesDoNotMatter();
    void absentInputsStayEmpty();
    void pageWithoutTheSectionGivesEmptyValues();
    void unreadablePageIsRefused_data();
    void unreadablePageIsRefused();
    void pageWithinTheBoundsIsRead_data();
    void pageWithinTheBoundsIsRead();
    void pageBeyondTheBoundsIsRefused_data();
    void pageBeyondTheBoundsIsRefused();

    void anyReadablePageIsAResult_data();
    void anyReadablePageIsAResult();
    void unreadableResultIsRefused();

    void passwordDigestIsHexadecimalMd5_data();
    void passwordDigestIsHexadecimalMd5();

    void formToTheByte();
    void formTrimsTheValues();
    void formWithoutTicketKeepsItsField();
    void ticketEscapesDashAndDot();
    void userNameIsPercentEncoded_data();
    void userNameIsPercentEncoded();
    void userNameWithPlaceMarkerIsDamaged_data();
    void userNameWithPlaceMarkerIsDamaged();
    void passwordTextIsNotEncoded();
};

namespace {

QByteArray formPage(const QByteArray& inputs)
{
    return "<!DOCTYPE html>\n<html><head><title>CAS &#8211; Central</title></head><body id=\"cas\">"
           "<div id=\"container\"><div id=\"content\"><div id=\"login\"><form method=\"post\">"
           "<section class=\"row\"><input name=\"lt\" value=\"elsewhere\"/></section>"
           "<section class=\"row btn-row\">" +
           inputs + "</section></form></div></div></div></body></html>";
}

const QByteArray HiddenInputs = "<input type=\"hidden\" name=\"lt\" value=\"LT-1-abc\" />\n"
                                "<input type=\"hidden\" name=\"execution\" value=\"e1s1\" />\n"
                                "<input type=\"hidden\" name=\"_eventId\" value=\"submit\" />\n";

constexpr int MaxPageSize = 4 * 1024 * 1024;

//! The text `count` times, each time with its number in place of "%".
QByteArray numbered(const QByteArray& text, int count)
{
    QByteArray all;
    for (int i = 0; i < count; ++i)
        all += QByteArray(text).replace('%', QByteArray::number(i));
    return all;
}

QByteArray nested(int depth)
{
    return QByteArray("<b>").repeated(depth) + QByteArray("</b>").repeated(depth);
}

//! The form page, padded with spaces to exactly this size.
QByteArray paddedPage(int size)
{
    return formPage(HiddenInputs + QByteArray(size - formPage(HiddenInputs).size(), ' '));
}

} // namespace

void TestCasForm::readsTheHiddenValues()
{
    MessageLog log;
    CasFormValues values;
    QVERIFY(NelvoPlugin::parseLoginArgs(formPage(HiddenInputs), values));
    QCOMPARE(values.lt.trimmed(), QStringLiteral("LT-1-abc"));
    QCOMPARE(values.execution.trimmed(), QStringLiteral("e1s1"));
    QCOMPARE(values.eventId.trimmed(), QStringLiteral("submit"));
    QVERIFY(log.entries().isEmpty());
}

void TestCasForm::namedEntitiesDoNotMatter()
{
    CasFormValues values;
    QVERIFY(NelvoPlugin::parseLoginArgs(
        formPage("&nbsp;&copy;&Uuml1;&AZaz09;<b>a&lt;b</b>&nbsp;" + HiddenInputs), values));
    QCOMPARE(values.lt.trimmed(), QStringLiteral("LT-1-abc"));
}

void TestCasForm::absentInputsStayEmpty()
{
    MessageLog log;
    CasFormValues values;
    QVERIFY(NelvoPlugin::parseLoginArgs(formPage("<input name=\"execution\" value=\"e1s1\"/>"), values));
    QCOMPARE(values.lt.trimmed(), QString());
    QCOMPARE(values.execution.trimmed(), QStringLiteral("e1s1"));
    QCOMPARE(values.eventId.trimmed(), QString());
    QVERIFY(log.entries().isEmpty());
}

void TestCasForm::pageWithoutTheSectionGivesEmptyValues()
{
    CasFormValues values;
    QVERIFY(NelvoPlugin::parseLoginArgs("<html><body id=\"cas\"/></html>", values));
    QVERIFY(values.lt.trimmed().isEmpty());
}

void TestCasForm::unreadablePageIsRefused_data()
{
    QTest::addColumn<QByteArray>("page");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("service unavailable");
    QTest::newRow("JSON") << QByteArray("{\"error\": 1}");
    QTest::newRow("unclosed") << formPage("<br>");
    QTest::newRow("bare ampersand") << formPage("a & b");
}

void TestCasForm::unreadablePageIsRefused()
{
    QFETCH(QByteArray, page);
    MessageLog log;
    CasFormValues values;
    QVERIFY(!NelvoPlugin::parseLoginArgs(page, values));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("query error")});
}

void TestCasForm::pageWithinTheBoundsIsRead_data()
{
    QTest::addColumn<QByteArray>("page");
    // 950 and 240 stay below the limits of 1000 and 250, because the names and levels of the form count too.
    row("names", formPage(HiddenInputs + numbered("<n%/>", 950)));
    row("names of attributes", formPage(HiddenInputs + numbered("<n a%=\"\"/>", 950)));
    row("one name over and over", formPage(HiddenInputs + numbered("<n/>", 5000)));
    row("levels", formPage(HiddenInputs + nested(240)));
    row("attributes", formPage(HiddenInputs + "<n" + numbered(" a%='\"'", 950) + "/>"));
    row("quotes in a script", formPage(HiddenInputs + "<script><![CDATA[if (a <b) c = [" +
                                       numbered("\"%\",", 2000) + "];]]></script>"));
    row("quotes in a comment", formPage(HiddenInputs + "<!-- <b " + numbered("it's '%', ", 2000) + "-->"));
    row("quotes in the text", formPage(HiddenInputs + "<b title=\">\">" + numbered("'%' ", 2000) + "</b>"));
    row("size", paddedPage(MaxPageSize));
}

void TestCasForm::pageWithinTheBoundsIsRead()
{
    QFETCH(QByteArray, page);
    MessageLog log;
    CasFormValues values;
    QVERIFY(NelvoPlugin::parseLoginArgs(page, values));
    QCOMPARE(values.lt.trimmed(), QStringLiteral("LT-1-abc"));
    QCOMPARE(values.execution.trimmed(), QStringLiteral("e1s1"));
    QCOMPARE(values.eventId.trimmed(), QStringLiteral("submit"));
    QVERIFY(NelvoPlugin::parsePostResult(page));
    QVERIFY(log.entries().isEmpty());
}

void TestCasForm::pageBeyondTheBoundsIsRefused_data()
{
    QTest::addColumn<QByteArray>("page");
    row("names", formPage(HiddenInputs + numbered("<n%/>", 1001)));
    row("names of attributes", formPage(HiddenInputs + numbered("<n a%=\"\"/>", 1001)));
    row("names of instructions", formPage(HiddenInputs + numbered("<?n% ?>", 1001)));
    row("levels", formPage(HiddenInputs + nested(251)));
    row("attributes", formPage(HiddenInputs + "<n" + numbered(" a%=''", 1001) + "/>"));
    row("attributes declared in the page",
        "<!DOCTYPE html [<!ATTLIST html" + numbered(" a% CDATA 'x'", 1001) + ">]><html/>");
    row("size", paddedPage(MaxPageSize + 1));

    // Without the limits, these pages crash the process or keep it busy for minutes.
    row("names that crash", formPage(HiddenInputs + numbered("<n%/>", 33000)));
    row("instructions that crash", formPage(HiddenInputs + numbered("<?n% ?>", 33000)));
    row("levels that crash", formPage(HiddenInputs + nested(200000)));
    row("attributes that take minutes", formPage(HiddenInputs + "<n" + numbered(" a%=\"\"", 200000) + "/>"));
}

void TestCasForm::pageBeyondTheBoundsIsRefused()
{
    QFETCH(QByteArray, page);
    MessageLog log;
    CasFormValues values;
    QElapsedTimer time;
    time.start();
    QVERIFY(!NelvoPlugin::parseLoginArgs(page, values));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("query error")});
    QVERIFY(!NelvoPlugin::parsePostResult(page));
    QCOMPARE(log.warnings().size(), 2);
    QVERIFY2(time.elapsed() < 10000, qPrintable(QString::number(time.elapsed())));
}

void TestCasForm::anyReadablePageIsAResult_data()
{
    QTest::addColumn<QByteArray>("page");
    row("welcome",
        QByteArray("<html><body id=\"cas\"><div id=\"msg\" class=\"success\">&nbsp;ok</div></body></html>"));
    row("rejection",
        QByteArray("<html><body id=\"cas\"><div id=\"msg\" class=\"errors\">no</div></body></html>"));
    row("anything", QByteArray("<x/>"));
}

void TestCasForm::anyReadablePageIsAResult()
{
    QFETCH(QByteArray, page);
    MessageLog log;
    QVERIFY(NelvoPlugin::parsePostResult(page));
    QVERIFY(log.entries().isEmpty());
}

void TestCasForm::unreadableResultIsRefused()
{
    MessageLog log;
    QVERIFY(!NelvoPlugin::parsePostResult("<html><body></html>"));
    QCOMPARE(log.warnings(), QStringList{QStringLiteral("query error")});
}

void TestCasForm::passwordDigestIsHexadecimalMd5_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("digest");
    QTest::newRow("empty") << QString() << QStringLiteral("d41d8cd98f00b204e9800998ecf8427e");
    QTest::newRow("ASCII") << QStringLiteral("123456") << QStringLiteral("e10adc3949ba59abbe56e057f20f883e");
    // printf '密码' | md5sum
    QTest::newRow("UTF-8") << QStringLiteral("密码") << QStringLiteral("a8105204604a0b11e916f3879aae3b0b");
}

void TestCasForm::passwordDigestIsHexadecimalMd5()
{
    QFETCH(QString, password);
    QFETCH(QString, digest);
    QCOMPARE(NelvoPlugin::passwordDigest(password), digest);
}

void TestCasForm::formToTheByte()
{
    const CasFormValues values{QStringLiteral("LT-12-Ab.c"), QStringLiteral("e1s1"),
                               QStringLiteral("submit")};
    QCOMPARE(NelvoPlugin::loginForm(values, QStringLiteral("lina"),
                                    QStringLiteral("e10adc3949ba59abbe56e057f20f883e")),
             QByteArray("%5FeventId=submit&execution=e1s1&lt=LT%2D12%2DAb%2Ec&productId=86"
                        "&submit=%25E7%2599%25BB%25E5%25BD%2595"
                        "&username=lina&password=e10adc3949ba59abbe56e057f20f883e"));
}

void TestCasForm::formTrimsTheValues()
{
    const CasFormValues values{QStringLiteral(" LT\n"), QStringLiteral("e1s1\n"),
                               QStringLiteral("\tsubmit ")};
    QVERIFY(NelvoPlugin::loginForm(values, {}, {})
                .startsWith("%5FeventId=submit&execution=e1s1&lt=LT&productId=86&"));
}

void TestCasForm::formWithoutTicketKeepsItsField()
{
    QVERIFY(NelvoPlugin::loginForm({}, {}, {}).startsWith("%5FeventId=&execution=&lt=&productId=86&"));
}

void TestCasForm::ticketEscapesDashAndDot()
{
    const CasFormValues values{QStringLiteral("a-b.c_d~e/f 登"), {}, {}};
    QVERIFY(NelvoPlugin::loginForm(values, {}, {}).contains("&lt=a%2Db%2Ec_d~e%2Ff%20%E7%99%BB&"));
}

void TestCasForm::userNameIsPercentEncoded_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QByteArray>("escaped");
    QTest::newRow("Chinese") << QStringLiteral("王芳") << QByteArray("%E7%8E%8B%E8%8A%B3");
    QTest::newRow("ampersand") << QStringLiteral("a&b=c") << QByteArray("a%26b%3Dc");
    QTest::newRow("mail") << QStringLiteral("li.na-1@x") << QByteArray("li.na-1%40x");
    QTest::newRow("blank") << QStringLiteral("a b") << QByteArray("a%20b");
    QTest::newRow("percent") << QStringLiteral("%2") << QByteArray("%252");
}

void TestCasForm::userNameIsPercentEncoded()
{
    QFETCH(QString, user);
    QFETCH(QByteArray, escaped);
    QVERIFY2(NelvoPlugin::loginForm({}, user, QStringLiteral("pw"))
                 .endsWith("&username=" + escaped + "&password=pw"),
             NelvoPlugin::loginForm({}, user, QStringLiteral("pw")).constData());
}

void TestCasForm::userNameWithPlaceMarkerIsDamaged_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QByteArray>("sent");
    QTest::newRow("plus") << QStringLiteral("a+b") << QByteArray("apwBb");
    QTest::newRow("comma") << QStringLiteral("a,b") << QByteArray("apwCb");
    QTest::newRow("slash") << QStringLiteral("a/b") << QByteArray("apwFb");
    QTest::newRow("asterisk") << QStringLiteral("a*b") << QByteArray("apwAb");
}

void TestCasForm::userNameWithPlaceMarkerIsDamaged()
{
    QFETCH(QString, user);
    QFETCH(QByteArray, sent);
    QVERIFY2(NelvoPlugin::loginForm({}, user, QStringLiteral("pw"))
                 .endsWith("&submit=%25E7%2599%25BB%25E5%25BD%2595&username=" + sent + "&password=pw"),
             NelvoPlugin::loginForm({}, user, QStringLiteral("pw")).constData());
}

void TestCasForm::passwordTextIsNotEncoded()
{
    QVERIFY(NelvoPlugin::loginForm({}, QStringLiteral("u"), QStringLiteral("clear & \u00e9"))
                .endsWith("&password=clear & \xC3\xA9"));
}

QTEST_GUILESS_MAIN(TestCasForm)
#include "test_casform.moc"
