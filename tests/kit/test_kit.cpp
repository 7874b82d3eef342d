#include "tests/support/files.h"

#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>

using TestSupport::contentOf;

namespace {

constexpr int PatienceMs = 120000;
constexpr int Enterprise = 1001;
const auto User = QStringLiteral("zhangwei");
const auto Password = QStringLiteral("123456");

const auto BuildDir = QStringLiteral(NELVO_BUILD_DIR);
const auto SourceDir = QStringLiteral(NELVO_SOURCE_DIR);
const auto Config = QStringLiteral(NELVO_CONFIG);

struct Outcome {
    int status = -1; //!< -1 if the program did not start, crashed or timed out
    QString out;
    QString error;
    QString all() const { return QStringLiteral("status %1\n").arg(status) + out + error; }
};

Outcome run(const QString& program, const QStringList& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments, QIODevice::ReadOnly);
    Outcome outcome;
    if (process.waitForFinished(PatienceMs) && process.exitStatus() == QProcess::NormalExit)
        outcome.status = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.error = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

Outcome cmake(const QStringList& arguments)
{
    return run(QStringLiteral(NELVO_CMAKE), arguments);
}

QStringList filesIn(const QString& directory)
{
    QStringList files;
    QDirIterator walk(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files.append(QDir(directory).relativeFilePath(walk.next()));
    files.sort();
    return files;
}

} // namespace

//! Installs this build into a folder and uses only this folder, like a host developer.
class TestKit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void kitIsWhole_data();
    void kitIsWhole();
    void kitNamesNoPathOfTheBuild();
    void kitHasWhatItsDocumentsLinkTo();
    void documentsNameNoPathOfTheRepository();
    void packageChecksVersionAndCompiler();
    void archiveHoldsTheKit();
    void debianPackagesHoldTheKit();
    void minimalListsTheProjects();
    void minimalTellsThatTheSignInFailed();
    void bimDialogOffersTheModels();
    void linkedHostFindsThePlugin();
    void editorRuns();
    void probeFindsAllWell();

private:
    QString inKit(const QString& name) const { return m_kit + QLatin1Char('/') + name; }
    QString built(const QString& name) const { return m_folder.path() + "/build/" + name; }
    Outcome install(const QString& prefix, const QStringList& further);
    Outcome configure(const QString& project, const QString& prefix, const QString& build,
                      const QStringList& further = {});
    void startServices();
    QStringList names(const QString& list, const QString& key) const;
    QStringList launchArguments(const QStringList& further) const;

    QTemporaryDir m_folder;
    //! The path contains a space, because users choose the path when they unpack the kit.
    QString m_kit = m_folder.path() + QStringLiteral("/the kit");
    QProcess m_services;
    QString m_signInUrl;
};

Outcome TestKit::install(const QString& prefix, const QStringList& further)
{
    return cmake(QStringList{"--install", BuildDir, "--config", Config, "--prefix", prefix} + further);
}

Outcome TestKit::configure(const QString& project, const QString& prefix, const QString& build,
                           const QStringList& further)
{
    return cmake(QStringList{"-S", SourceDir + "/tests/kit/" + project, "-B", build, "-G", NELVO_GENERATOR,
                             "-DCMAKE_PREFIX_PATH=" + prefix, "-DCMAKE_BUILD_TYPE=Release",
                             QStringLiteral("-DCMAKE_CXX_COMPILER=%1").arg(NELVO_COMPILER),
                             QStringLiteral("-DQt5_DIR=%1").arg(NELVO_QT_DIR),
                             // Empty, because a variable of the environment can set a launcher.
                             "-DCMAKE_CXX_COMPILER_LAUNCHER="} +
                 further);
}

void TestKit::initTestCase()
{
    QVERIFY(m_folder.isValid());
    // Stripping removes the debug symbols and with them the paths of the build.
    const Outcome installed = install(m_kit, {"--strip"});
    QVERIFY2(installed.status == 0, qPrintable(installed.all()));
    const Outcome configured =
        configure("consumer", m_kit, built({}), {"-DKIT_EXAMPLES=" + inKit("share/nelvo/examples")});
    QVERIFY2(configured.status == 0, qPrintable(configured.all()));
    const Outcome compiled = cmake({"--build", built({}), "--config", "Release"});
    QVERIFY2(compiled.status == 0, qPrintable(compiled.all()));
    startServices();
}

void TestKit::cleanupTestCase()
{
    m_services.kill();
    m_services.waitForFinished(PatienceMs);
}

void TestKit::startServices()
{
    const QString readyFile = m_folder.filePath("ready.json");
    m_services.setStandardOutputFile(QProcess::nullDevice());
    m_services.start(inKit("bin/nelvo-services"),
                     {"--seed", inKit("share/nelvo/seed.json"), "--ready-file", readyFile});
    QTRY_VERIFY2_WITH_TIMEOUT(QFile::exists(readyFile), m_services.readAllStandardError().constData(),
                              PatienceMs);
    m_signInUrl = QJsonDocument::fromJson(contentOf(readyFile))["signIn"].toString();
    QVERIFY(!m_signInUrl.isEmpty());
}

//! The names in one list of the enterprise in the seed. `key` is the name's field.
QStringList TestKit::names(const QString& list, const QString& key) const
{
    const QJsonArray enterprises =
        QJsonDocument::fromJson(contentOf(inKit("share/nelvo/seed.json")))["enterprises"].toArray();
    QStringList found;
    for (const QJsonValue& enterprise : enterprises) {
        if (enterprise["id"].toInt() != Enterprise)
            continue;
        const QJsonArray entries = enterprise[list].toArray();
        for (const QJsonValue& entry : entries)
            found.append(entry[key].toString());
    }
    return found;
}

QStringList TestKit::launchArguments(const QStringList& further) const
{
    return QStringList{"--user", User,        "--password",   Password,
                       "--url",  m_signInUrl, "--enterprise", QString::number(Enterprise)} +
           further;
}

void TestKit::kitIsWhole_data()
{
    QTest::addColumn<QString>("file");
    for (const char* file :
         {"include/NelvoSDK/INelvoSDKPlugin.h", "include/NelvoSDK/LoadPlugin.h", "include/NelvoSDK/Version.h",
          "include/BVUtility/ISubject.h", "app/defaultServerAddress.json", "app/ProxyUrlSuffix.json",
          "app/updateConfig.json", "README.md", "share/doc/NelvoPlugin/CHANGELOG.md",
          "share/doc/NelvoPlugin/SECURITY.md", "share/doc/NelvoPlugin/docs/compatibility.md",
          "share/doc/NelvoPlugin/docs/kit.md", "share/nelvo/examples/translation/nelvo_en.ts",
          "share/doc/NelvoPlugin/docs/deployment.md", "share/doc/NelvoPlugin/docs/third-party.md",
          "share/nelvo/examples/minimal/main.cpp", "share/nelvo/hostmodules/hostmodules.qrc"})
        QTest::newRow(file) << file;
}

void TestKit::kitIsWhole()
{
    QFETCH(QString, file);
    QVERIFY(!contentOf(inKit(file)).isEmpty());
}

void TestKit::kitNamesNoPathOfTheBuild()
{
    const QStringList files = filesIn(m_kit);
    QVERIFY(!files.isEmpty());
    for (const QString& file : files) {
        // Licence texts of other projects may contain a path like "/src" by chance.
        if (file.startsWith("share/doc/NelvoPlugin/licenses/"))
            continue;
        const QByteArray content = contentOf(inKit(file));
        QVERIFY2(!content.contains(SourceDir.toUtf8()), qPrintable(file));
        QVERIFY2(!content.contains(BuildDir.toUtf8()), qPrintable(file));
    }
}

void TestKit::kitHasWhatItsDocumentsLinkTo()
{
    for (const QString& folder : {m_kit, inKit("share/doc/NelvoPlugin")}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("NELVO_DOCUMENTS", folder);
        const Outcome outcome = run(
            "python3", {"-B", SourceDir + "/tests/docs/test_links.py", "TestLinks.test_links_lead_somewhere"},
            environment);
        QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    }
    QVERIFY(contentOf(inKit("share/doc/NelvoPlugin/docs/integration.md"))
                .contains("](../../../../include/NelvoSDK/LoginSession.h)"));
}

void TestKit::documentsNameNoPathOfTheRepository()
{
    const QStringList files = filesIn(m_kit).filter(QRegularExpression("^[^/]+\\.md$|^share/doc/.*\\.md$"));
    QVERIFY(files.size() > 10);
    for (const QString& file : files) {
        const QString text = QString::fromUtf8(contentOf(inKit(file)));
        for (const char* path :
             {"build/release", "devkit/", "tests/", "tools/", "<!-- repository", "make run"})
            QVERIFY2(!text.contains(path), qPrintable(file + QStringLiteral(": ") + path));
    }
}

void TestKit::packageChecksVersionAndCompiler()
{
    const QString prefix = m_folder.filePath("sdk");
    const Outcome installed = install(prefix, {"--component", "sdk"});
    QVERIFY2(installed.status == 0, qPrintable(installed.all()));
    const Outcome configured = configure("package", prefix, m_folder.filePath("package"));
    QVERIFY2(configured.status == 0, qPrintable(configured.all()));
    QVERIFY2(!configured.error.contains("CMake Warning"), qPrintable(configured.all()));

    const Outcome other =
        configure("package", prefix, m_folder.filePath("other"), {"-DKIT_COMPILER_ID=OtherCompiler"});
    QVERIFY2(other.status == 0, qPrintable(other.all()));
    const QString text = other.error.simplified();
    QVERIFY2(text.contains("NelvoSDK was built with the compiler " NELVO_COMPILER_ID), qPrintable(text));
    QVERIFY2(text.contains("this project uses OtherCompiler"), qPrintable(text));
}

void TestKit::archiveHoldsTheKit()
{
    // CPack packs the installed files instead of building and installing again.
    const QString folder = m_folder.filePath("archive");
    const Outcome packed = run(NELVO_CPACK, {"--config", BuildDir + "/CPackConfig.cmake", "-C", Config, "-B",
                                             folder, "-D", "CPACK_INSTALL_CMAKE_PROJECTS=", "-D",
                                             "CPACK_INSTALLED_DIRECTORIES=" + m_kit + ";."});
    QVERIFY2(packed.status == 0, qPrintable(packed.all()));
    const QStringList archives = QDir(folder).entryList({"NelvoSDK-*.tar.gz", "NelvoSDK-*.zip"}, QDir::Files);
    QCOMPARE(archives.size(), 1);

    const QString unpacked = m_folder.filePath("unpacked");
    QVERIFY(QDir().mkpath(unpacked));
    const Outcome extracted = cmake({"-E", "chdir", unpacked, NELVO_CMAKE, "-E", "tar", "xf",
                                     folder + QLatin1Char('/') + archives.constFirst()});
    QVERIFY2(extracted.status == 0, qPrintable(extracted.all()));
    const QStringList top = QDir(unpacked).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    QCOMPARE(top.size(), 1);
    QCOMPARE(filesIn(unpacked + QLatin1Char('/') + top.constFirst()), filesIn(m_kit));
}

void TestKit::debianPackagesHoldTheKit()
{
    if (QStandardPaths::findExecutable("dpkg-shlibdeps").isEmpty())
        QSKIP("dpkg-dev is not installed");
    const QString folder = m_folder.filePath("debian");
    const Outcome packed =
        run(NELVO_CPACK, {"--config", BuildDir + "/CPackConfig.cmake", "-C", Config, "-G", "DEB", "-B",
                          folder, "-D", "CPACK_DEBIAN_COMPRESSION_TYPE=none"});
    QVERIFY2(packed.status == 0, qPrintable(packed.all()));
    const auto namesOf = [&folder](const QString& pattern) {
        QStringList names;
        for (const QString& file : QDir(folder).entryList({pattern}, QDir::Files))
            names.append(file.section('_', 0, 0));
        return names;
    };
    const QStringList packages{"nelvo-devkit", "nelvo-doc", "nelvo-plugin", "nelvo-sdk"};
    QCOMPARE(namesOf("*.deb"), packages);
    QCOMPARE(namesOf("*.deb.sha256"), packages);
    QCOMPARE(namesOf("*.ddeb"), (QStringList{"nelvo-devkit-dbgsym", "nelvo-plugin-dbgsym"}));

    const QString root = m_folder.filePath("root");
    for (const QString& file : QDir(folder).entryList({"*.deb"}, QDir::Files)) {
        const Outcome unpacked = run("dpkg-deb", {"-x", folder + QLatin1Char('/') + file, root});
        QVERIFY2(unpacked.status == 0, qPrintable(unpacked.all()));
    }
    QCOMPARE(filesIn(root + "/opt/nelvo"), filesIn(m_kit));
    const QString plugin = QDir(folder).entryList({"nelvo-plugin_*.deb"}).value(0);
    const QString needed = run("dpkg-deb", {"-f", folder + QLatin1Char('/') + plugin, "Depends"}).out;
    for (const char* package : {"libquazip1-qt5-1", "libqt5quick5", "qml-module-qtgraphicaleffects"})
        QVERIFY2(needed.contains(QLatin1String(package)), qPrintable(needed));
}

void TestKit::minimalListsTheProjects()
{
    const QStringList projects = names("projects", "name");
    QVERIFY(!projects.isEmpty());
    const Outcome outcome =
        run(built("examples/minimal/minimal"),
            {QStringList{
                User, TestSupport::md5(Password.toUtf8()), m_signInUrl, {}, {}, QString::number(Enterprise)}
                 .join("$$")});
    QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    QStringList lines = outcome.out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.takeFirst(), QStringLiteral("plug-in 1.0.0"));
    QVERIFY(lines.takeFirst().startsWith(
        QStringLiteral("signed in: 远景建筑设计研究院, editor service http://")));
    QCOMPARE(lines.takeLast(), QStringLiteral("shut down"));
    for (const QString& project : projects)
        QVERIFY2(lines.removeOne("project: " + project), qPrintable(outcome.all()));
    QCOMPARE(lines, QStringList());
}

void TestKit::minimalTellsThatTheSignInFailed()
{
    const Outcome outcome =
        run(built("examples/minimal/minimal"),
            {QStringList{User, "0", m_signInUrl, {}, {}, QString::number(Enterprise)}.join("$$")});
    QCOMPARE(outcome.status, EXIT_FAILURE);
    QCOMPARE(outcome.out, QStringLiteral("plug-in 1.0.0\nshut down\n"));
    QVERIFY2(outcome.error.contains("the sign-in brought no editor service\n"), qPrintable(outcome.all()));
}

void TestKit::bimDialogOffersTheModels()
{
    const QStringList models = names("bimModels", "ppName");
    QVERIFY(!models.isEmpty());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_PLUGIN_PATH", NELVO_MODELCHOOSER_DIR);
    environment.insert("QT_QPA_GENERIC_PLUGINS", "nelvo-kit-modelchooser");
    const Outcome outcome =
        run(inKit("bin/nelvo-launch"),
            launchArguments({"--host", built("examples/bimdialog/bimdialog"), "--await-end"}), environment);
    QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    const QStringList lines = outcome.out.split('\n', Qt::SkipEmptyParts);
    for (const QString& line :
         {QStringLiteral("signed in: 远景建筑设计研究院"), QStringLiteral("the dialog is open"),
          "models: " + models.join(", "), "import: " + models.constFirst()})
        QVERIFY2(lines.contains(line), qPrintable(outcome.all()));
    // No page has logged an error, not even during the shutdown.
    QVERIFY2(!outcome.error.contains("qrc:/"), qPrintable(outcome.all()));
}

void TestKit::linkedHostFindsThePlugin()
{
    const Outcome outcome = run(built("linked"), {});
    QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    QCOMPARE(outcome.out, QStringLiteral("1.0.0\n"));
}

void TestKit::editorRuns()
{
    const Outcome outcome = run(inKit("bin/nelvo-launch"), launchArguments({"--end"}));
    QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    QVERIFY2(outcome.out.contains("nelvo-launch: the host says \"1\""), qPrintable(outcome.all()));
}

void TestKit::probeFindsAllWell()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("NELVO_PROBE_PASSWORD", Password);
    const Outcome outcome =
        run(inKit("bin/nelvo-probe"),
            {"--url", m_signInUrl, "--user", User, "--enterprise", QString::number(Enterprise), "--json"},
            environment);
    QVERIFY2(outcome.status == 0, qPrintable(outcome.all()));
    const QJsonArray steps = QJsonDocument::fromJson(outcome.out.toUtf8())["steps"].toArray();
    QVERIFY2(!steps.isEmpty(), qPrintable(outcome.all()));
    for (const QJsonValue step : steps)
        QVERIFY2(step["verdict"] == "well" || step["step"] == "updates", qPrintable(outcome.all()));
}

QTEST_GUILESS_MAIN(TestKit)
#include "test_kit.moc"
