#include "tests/support/row.h"
#include "tests/support/systemtexts.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using TestSupport::row;

namespace {

constexpr int PatienceMs = 120000;

} // namespace

//! A failing tour prints the station and the reason, and ends the host with status 1.
class TestTour : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void failedStation_data();
    void failedStation();
    void linesGoToTheLogAsWell();

private:
    //! Runs the host with the tour. Returns the host's exit status, or -1 if it crashes or times out.
    int run(const QProcessEnvironment& tour);

    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    const QTemporaryDir m_folder;
    QString m_output;
};

int TestTour::run(const QProcessEnvironment& tour)
{
    QProcessEnvironment environment = m_environment;
    environment.insert("QT_PLUGIN_PATH", NELVO_PLUGINS_DIR);
    environment.insert("QT_QPA_GENERIC_PLUGINS", "nelvo-tour");
    environment.insert(tour);
    QProcess host;
    host.setProcessEnvironment(environment);
    host.start(NELVO_EDITOR_PROGRAM, QStringList());
    const bool ended = host.waitForFinished(PatienceMs) && host.exitStatus() == QProcess::NormalExit;
    m_output = QString::fromUtf8(TestSupport::withPlainLineEnds(host.readAllStandardOutput()));
    return ended ? host.exitCode() : -1;
}

void TestTour::failedStation_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("line");
    row("no simulator", "NELVO_TOUR", "windows", "MISSED: 00-simulator: the ready file ");
    row("unknown stations", "NELVO_TOUR", "all", "MISSED: unknown stations 'all'\n");
    row("account without password", "NELVO_TOUR_ACCOUNT", "lina",
        "MISSED: sign-in: the account is USER:PASSWORD\n");
}

void TestTour::failedStation()
{
    QFETCH(const QString, variable);
    QFETCH(const QString, value);
    QFETCH(const QString, line);
    QProcessEnvironment tour;
    tour.insert("NELVO_TOUR_PICTURES", m_folder.filePath("pictures"));
    tour.insert(variable, value);
    QCOMPARE(run(tour), 1);
    QVERIFY2(m_output.contains(line), qPrintable(m_output));
}

void TestTour::linesGoToTheLogAsWell()
{
    const QString log = m_folder.filePath("tour.log");
    QProcessEnvironment tour;
    tour.insert("NELVO_TOUR", "all");
    tour.insert("NELVO_TOUR_LOG", log);
    QCOMPARE(run(tour), 1);
    QFile file(log);
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.errorString()));
    QCOMPARE(file.readAll(), QByteArray("MISSED: unknown stations 'all'\n"));
}

QTEST_GUILESS_MAIN(TestTour)
#include "test_tour.moc"
