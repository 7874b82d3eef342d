#include "tests/probe/proberun.h"

#include "tests/support/accounts.h"
#include "tests/support/systemtexts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>

namespace {

constexpr int PatienceMs = 120000;

} // namespace

ProbeRun::ProbeRun(const QStringList& arguments, const QString& password)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!password.isNull())
        environment.insert(QStringLiteral("NELVO_PROBE_PASSWORD"), password);
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(NELVO_PROBE_PROGRAM), arguments);
    program.write((TestSupport::passwordOf(QStringLiteral("lina")) + QStringLiteral("\r\nmore\n")).toUtf8());
    program.closeWriteChannel();
    if (!program.waitForFinished(PatienceMs) || program.exitStatus() != QProcess::NormalExit)
        qFatal("nelvo-probe did not end normally: %s", qPrintable(program.errorString()));
    status = program.exitCode();
    output = TestSupport::withPlainLineEnds(program.readAllStandardOutput());
    error = TestSupport::withPlainLineEnds(program.readAllStandardError());
}

ProbeRun ProbeRun::withJson(const QString& url, const QString& user, const QStringList& further)
{
    const QStringList arguments{"--url", url, "--user", user, "--plugin", NELVO_PLUGIN_FOLDER, "--json"};
    return {arguments + further, TestSupport::passwordOf(user)};
}

QJsonObject ProbeRun::json() const
{
    return QJsonDocument::fromJson(output).object();
}

QJsonObject ProbeRun::step(const QString& key) const
{
    const QJsonArray steps = json().value(QStringLiteral("steps")).toArray();
    for (const QJsonValue found : steps) {
        if (found[QStringLiteral("step")].toString() == key)
            return found.toObject();
    }
    return {};
}

QString ProbeRun::verdict(const QString& key) const
{
    return step(key).value(QStringLiteral("verdict")).toString();
}

QString ProbeRun::words(const QString& key) const
{
    return step(key).value(QStringLiteral("words")).toString();
}
