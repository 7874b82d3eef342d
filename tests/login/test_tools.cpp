#include "login/tools.h"

#include <QtTest>

class TestTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toPercentString_data();
    void toPercentString();
    void pagesCanCallIt();
};

void TestTools::toPercentString_data()
{
    QTest::addColumn<QString>("src");
    QTest::addColumn<QString>("expected");

    QTest::newRow("empty") << QString() << QString();
    QTest::newRow("unreserved") << QStringLiteral("aZ09-._~") << QStringLiteral("aZ09-._~");
    QTest::newRow("blank") << QStringLiteral("a b") << QStringLiteral("a%20b");
    QTest::newRow("percent") << QStringLiteral("100%") << QStringLiteral("100%25");
    QTest::newRow("separators") << QStringLiteral("&=/+") << QStringLiteral("%26%3D%2F%2B");
    QTest::newRow("Chinese") << QStringLiteral("登录") << QStringLiteral("%E7%99%BB%E5%BD%95");
}

void TestTools::toPercentString()
{
    QFETCH(QString, src);
    QFETCH(QString, expected);
    QCOMPARE(CTools().toPercentString(src), expected);
}

void TestTools::pagesCanCallIt()
{
    CTools tools;
    QString result;
    QVERIFY(QMetaObject::invokeMethod(&tools, "toPercentString", Q_RETURN_ARG(QString, result),
                                      Q_ARG(QString, QStringLiteral(" "))));
    QCOMPARE(result, QStringLiteral("%20"));
}

QTEST_APPLESS_MAIN(TestTools)
#include "test_tools.moc"
