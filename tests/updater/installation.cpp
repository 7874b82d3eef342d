#include "tests/updater/installation.h"
#include "tests/support/files.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSettings>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

//! The user's settings of the hosts of this test program. Other test programs have other settings.
QSettings settings()
{
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, "NelvoTests",
                     QCoreApplication::applicationName());
}

} // namespace

Installation::Installation(const QString& program, const QString& subdirectory, const QString& parent)
    : m_dir(parent + "/nelvo-XXXXXX"), m_home(m_dir.filePath(subdirectory)), m_program(path("NelvoEditor"))
{
    const QString suffix = QFileInfo(program).suffix();
    if (!suffix.isEmpty())
        m_program += '.' + suffix;
    if (!m_dir.isValid() || !QDir().mkpath(m_home) || !QFile::copy(program, m_program))
        qFatal("cannot install the host");
    write("updateConfig.json", R"({"version": "1.0.0", "other": true})");
    // On systems that store settings in files, the hosts use this directory too.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_dir.filePath("config"));
    settings().clear();
}

Installation::~Installation()
{
    settings().clear();
    // Windows releases the files of a process some time after the process has ended.
    if (!QTest::qWaitFor([this] { return QDir(root()).removeRecursively(); }))
        qWarning("%s is left behind", qUtf8Printable(root()));
}

QByteArray Installation::content(const QString& name) const
{
    return TestSupport::contentOf(path(name));
}

QJsonObject Installation::json(const QString& name) const
{
    return QJsonDocument::fromJson(content(name)).object();
}

bool Installation::exists(const QString& name) const
{
    return QFileInfo::exists(path(name));
}

void Installation::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(name));
}

void Installation::writeState(int updateState) const
{
    write("NelvoUpdateState.dat", QJsonDocument(QJsonObject{{"updateState", updateState},
                                                            {"fullMd5", "abc"},
                                                            {"remarks", "first<br/>second"},
                                                            {"pVersion", "1.0.1"}})
                                      .toJson());
}

void Installation::makeBatchFileStartable() const
{
    // Longer than the new content, which must replace it completely.
    write("cover.bat", QByteArray(5000, '#'));
    QFile::setPermissions(path("cover.bat"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QString Installation::configVersion() const
{
    return json("updateConfig.json").value("version").toString();
}

QString Installation::settingsVersion() const
{
    return settings().value("version").toString();
}

void Installation::start(const QStringList& arguments)
{
    m_output.clear();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", m_dir.filePath("config"));
    environment.insert("NELVO_TEST_SETTINGS", QCoreApplication::applicationName());
    m_process.setProcessEnvironment(environment);
    m_process.setWorkingDirectory(root());
    m_process.start(m_program, arguments);
}

bool Installation::run(const QStringList& arguments)
{
    start(arguments);
    return ends();
}

bool Installation::ends()
{
    const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(Patience);
    m_output += m_process.readAllStandardOutput();
    return ended && m_process.error() != QProcess::FailedToStart &&
           m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

bool Installation::reaches(const QString& event)
{
    while (!events().contains(event)) {
        if (!m_process.waitForReadyRead(Patience))
            return false;
        m_output += m_process.readAllStandardOutput();
    }
    return true;
}

void Installation::kill()
{
    m_process.kill();
    m_process.waitForFinished(Patience);
    m_output += m_process.readAllStandardOutput();
}

QStringList Installation::orderedEvents() const
{
    QStringList ordered;
    const QStringList all = events();
    std::copy_if(all.begin(), all.end(), std::back_inserter(ordered), [](const QString& event) {
        return !event.startsWith("upgradeProcess 0") && !event.startsWith("shown ");
    });
    return ordered;
}

QString Installation::recordsAt(const QString& event) const
{
    const QStringList all = events();
    for (int i = all.size() - 1; i >= 0; --i) {
        if (all[i].startsWith(event))
            return column(1)[i];
    }
    return {};
}

QStringList Installation::column(int index) const
{
    const QRegularExpression place(R"( \S*updater[/\\]updater\.cpp \d+ )");
    QStringList texts;
    QStringList lines = QString::fromUtf8(m_output).remove('\r').split('\n');
    lines.removeLast(); // empty or incomplete
    for (const QString& line : qAsConst(lines))
        texts.append(line.section('\t', index, index).replace(place, QStringLiteral(" > ")));
    return texts;
}

bool makeFifo(const QString& path)
{
    return QProcess::execute(QStringLiteral("mkfifo"), {path}) == 0;
}
