#include "tests/docs/page.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

const auto Kind = QStringLiteral("snippet");

//! The lines of the built sources between two lines `//! [name]`.
QString snippet(const QString& sources, const QString& name)
{
    const QRegularExpression piece(QStringLiteral("^//! \\[%1\\]\n(.*?)^//! \\[%1\\]$").arg(name),
                                   QRegularExpression::MultilineOption |
                                       QRegularExpression::DotMatchesEverythingOption);
    return piece.match(sources).captured(1);
}

QStringList snippetNames(const QString& sources)
{
    QStringList names;
    QRegularExpressionMatchIterator marks =
        QRegularExpression(QStringLiteral("^//! \\[([\\w-]+)\\]$"), QRegularExpression::MultilineOption)
            .globalMatch(sources);
    while (marks.hasNext())
        names.append(marks.next().captured(1));
    names.removeDuplicates();
    return names;
}

} // namespace

//! Compares the code in the integration guide with the built sources.
class TestIntegrationGuide : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codeStandsInTheSources_data();
    void codeStandsInTheSources();
    void everyPieceIsShown();
    void allCodeHasAName();

private:
    const Docs::Page m_page{QStringLiteral("integration.md")};
    const QString m_sources = Docs::sourcesIn(QStringLiteral("snippets"));
};

void TestIntegrationGuide::codeStandsInTheSources_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = m_page.names(Kind);
    for (const QString& name : names)
        QTest::newRow(qPrintable(name)) << name;
    QVERIFY(!names.isEmpty());
}

void TestIntegrationGuide::codeStandsInTheSources()
{
    QFETCH(QString, name);
    QVERIFY(!snippet(m_sources, name).isEmpty());
    QCOMPARE(m_page.block(Kind, name), snippet(m_sources, name));
}

void TestIntegrationGuide::everyPieceIsShown()
{
    QStringList built = snippetNames(m_sources);
    QStringList shown = m_page.names(Kind);
    built.sort();
    shown.sort();
    QCOMPARE(shown, built);
}

void TestIntegrationGuide::allCodeHasAName()
{
    QCOMPARE(m_page.text().count(QStringLiteral("```cpp\n")), m_page.names(Kind).size());
}

QTEST_GUILESS_MAIN(TestIntegrationGuide)
#include "test_integration_guide.moc"
