#include <QProcess>
#include <QtTest>

namespace {

constexpr int PatienceMs = 30000;

} // namespace

//! \brief The help and the errors of the devkit's programs go to the standard output and error. A message box
//!   would wait forever.
class TestUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void help_data();
    void help();
    void unknownOption_data();
    void unknownOption();

private:
    //! Returns the exit status, or -1 if the program crashes or times out.
    int run(const QString& program, const QStringList& arguments);

    QString m_output;
    QString m_error;
};

int TestUsage::run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    const bool ended = process.waitForFinished(PatienceMs) && process.exitStatus() == QProcess::NormalExit;
    const auto text = [](QByteArray bytes) { return QString::fromUtf8(bytes.replace("\r\n", "\n")); };
    m_output = text(process.readAllStandardOutput());
    m_error = text(process.readAllStandardError());
    return ended ? process.exitCode() : -1;
}

void TestUsage::help_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* program, const char* option, const char* text) {
        QTest::addRow("%s %s", qPrintable(QFileInfo(program).baseName()), option)
            << program << option << text;
    };
    row(NELVO_LAUNCH_PROGRAM, "--help", "--md5 <HEX>");
    row(NELVO_PACKAGE_PROGRAM, "--help", "  directory  ");
    row(NELVO_PACKAGE_PROGRAM, "-h", "  directory  ");
    row(NELVO_PROBE_PROGRAM, "--help", "--update-url <ADDRESS>");
    row(NELVO_SERVICES_PROGRAM, "--help", "--ready-file <file>");
}

void TestUsage::help()
{
    QFETCH(const QString, program);
    QFETCH(const QString, option);
    QFETCH(const QString, text);
    QCOMPARE(run(program, {option}), 0);
    QVERIFY2(m_output.startsWith(QStringLiteral("Usage: ") + QDir::toNativeSeparators(program)),
             qPrintable(m_output));
    QVERIFY2(m_output.contains(text), qPrintable(m_output));
    QCOMPARE(m_error, QString());
}

void TestUsage::unknownOption_data()
{
    QTest::addColumn<QString>("program");
    for (const char* program :
         {NELVO_LAUNCH_PROGRAM, NELVO_PACKAGE_PROGRAM, NELVO_PROBE_PROGRAM, NELVO_SERVICES_PROGRAM})
        QTest::newRow(qPrintable(QFileInfo(program).baseName())) << QString::fromUtf8(program);
}

void TestUsage::unknownOption()
{
    QFETCH(const QString, program);
    QCOMPARE(run(program, {QStringLiteral("--colour")}), 2);
    QCOMPARE(m_error, QFileInfo(program).baseName() +
                          QStringLiteral(": Unknown option 'colour'; --help lists the options\n"));
    QCOMPARE(m_output, QString());
}

QTEST_GUILESS_MAIN(TestUsage)
#include "test_usage.moc"
