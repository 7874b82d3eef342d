#include "tests/support/systemtexts.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

//! Starts the built host in a folder where files are missing or wrong.
class TestHostStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void libraryMissing();
    void libraryBroken();
    void exportMissing();
    void optionsWrong();
    void settingsMissing();
    void settingsWrong();
    void ownSettingsWrong();
    void singleArgumentIsForThePlugin();
    void signInIsNoOptionWhateverItBeginsWith();
};

namespace {

const QString Program = QStringLiteral(NELVO_EDITOR_PROGRAM);
const QString Plugin = QStringLiteral(NELVO_PLUGIN_FILE);
const QString EmptyLibrary = QStringLiteral(NELVO_EMPTY_LIBRARY);

//! The result of a run of the host.
struct Ending {
    int status = -1;
    QString output;
    QString error;
};

//! An application folder with the host, removed at the end of the test.
class Folder
{
public:
    Folder() { copy(Program, QFileInfo(Program).fileName()); }

    QString path(const QString& name) const { return m_directory.filePath(name); }
    //! Installs a library under the plug-in's name.
    void addPlugin(const QString& library) const { copy(library, QFileInfo(Plugin).fileName()); }
    void write(const QString& name, const QByteArray& content) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
    }
    Ending run(const QStringList& arguments) const
    {
        QProcess process;
        process.start(path(QFileInfo(Program).fileName()), arguments);
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
            qFatal("the host did not end normally: %s", qPrintable(process.errorString()));
        const auto text = [](const QByteArray& output) {
            return QString::fromLocal8Bit(TestSupport::withPlainLineEnds(output));
        };
        return {process.exitCode(), text(process.readAllStandardOutput()),
                text(process.readAllStandardError())};
    }

private:
    void copy(const QString& from, const QString& name) const
    {
        if (!QFile::copy(from, path(name)))
            qFatal("cannot copy %s", qPrintable(from));
    }

    const QTemporaryDir m_directory;
};

} // namespace

void TestHostStart::libraryMissing()
{
    const Folder folder;
    const Ending host = folder.run({});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(QStringLiteral("NelvoEditor: Cannot load library ")),
             qPrintable(host.error));
    QVERIFY2(QDir::fromNativeSeparators(host.error).contains(folder.path(QStringLiteral("NelvoPlugin"))),
             qPrintable(host.error));
}

void TestHostStart::libraryBroken()
{
    const Folder folder;
    folder.write(QFileInfo(Plugin).fileName(), "this is no library");
    const Ending host = folder.run({});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(QStringLiteral("NelvoEditor: Cannot load library ")),
             qPrintable(host.error));
}

void TestHostStart::exportMissing()
{
    const Folder folder;
    folder.addPlugin(EmptyLibrary);
    const Ending host = folder.run({});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(QFileInfo(Plugin).fileName() +
                                 QStringLiteral(" does not export GetNelvoSDKPlugin")),
             qPrintable(host.error));
}

void TestHostStart::optionsWrong()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    const Ending host = folder.run({QStringLiteral("--colour"), QStringLiteral("blue")});
    QCOMPARE(host.status, 2);
    // Qt may log a warning about the system first.
    QVERIFY2(host.error.endsWith(
                 QStringLiteral("NelvoEditor: Unknown option 'colour'; --help lists the options\n")),
             qPrintable(host.error));
}

void TestHostStart::settingsMissing()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    const QString file = folder.path(QStringLiteral("none.json"));
    const Ending host = folder.run({QStringLiteral("--settings"), file});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(QStringLiteral("NelvoEditor: settings %1: ").arg(file)),
             qPrintable(host.error));
}

void TestHostStart::settingsWrong()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    folder.write(QStringLiteral("s.json"), R"({"color": "blue"})");
    const Ending host = folder.run({QStringLiteral("--settings"), folder.path(QStringLiteral("s.json"))});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(QStringLiteral("unknown key \"color\"")), qPrintable(host.error));
}

void TestHostStart::ownSettingsWrong()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    folder.write(QStringLiteral("NelvoEditor.json"), "[");
    const Ending host = folder.run({});
    QCOMPARE(host.status, 1);
    QVERIFY2(host.error.contains(folder.path(QStringLiteral("NelvoEditor.json"))), qPrintable(host.error));
}

void TestHostStart::singleArgumentIsForThePlugin()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    const Ending host = folder.run({QStringLiteral("--help")});
    QVERIFY2(host.error.contains(QStringLiteral("'--help' goes to the plug-in, as a sign-in\nUsage: ")),
             qPrintable(host.error));
    QVERIFY2(!host.error.contains(QStringLiteral("Unknown option")), qPrintable(host.error));
}

//! The sign-in fails, and a failed sign-in from the command line ends the host.
void TestHostStart::signInIsNoOptionWhateverItBeginsWith()
{
    const Folder folder;
    folder.addPlugin(Plugin);
    const Ending host = folder.run({QStringLiteral("--help$$md5$$127.0.0.1:1$$$$$$1")});
    QCOMPARE(host.status, 0);
    QVERIFY2(host.error.contains(QStringLiteral("login failed: ")), qPrintable(host.error));
    QVERIFY2(!host.error.contains(QStringLiteral("Usage: ")), qPrintable(host.error));
}

QTEST_GUILESS_MAIN(TestHostStart)
#include "test_host_start.moc"
