#include "probe/report.h"

#include "probe/explanation.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSysInfo>

namespace NelvoDevkit {

namespace {

constexpr auto Version = NELVO_PROBE_VERSION;

QString requestOf(Step step)
{
    const StepInfo& info = infoOf(step);
    return (QString::fromLatin1(info.method) + QLatin1Char(' ') + QString::fromLatin1(info.path)).trimmed();
}

//! On one line and without control characters, because parts of the text come from servers.
QString wordsOf(const Finding& finding)
{
    static const QRegularExpression control(QStringLiteral("\\p{Cc}+"));
    const QString words = QString(finding.words).replace(control, QStringLiteral(" "));
    return finding.askedDirectly ? words + QStringLiteral(" (asked directly)") : words;
}

QString row(const QString& verdict, const QString& step, const QString& time, const QString& words)
{
    QString text = QStringLiteral("  %1 %2 %3  %4").arg(verdict, -11).arg(step, -18).arg(time, 9).arg(words);
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text + QLatin1Char('\n');
}

QString rowOf(const Finding& finding)
{
    const QString verdict =
        finding.verdict == Verdict::Wrong ? wordOf(finding.verdict).toUpper() : wordOf(finding.verdict);
    const QString time =
        finding.milliseconds < 0 ? QString() : QStringLiteral("%1 ms").arg(finding.milliseconds);
    return row(verdict, QString::fromLatin1(infoOf(finding.step).name), time, wordsOf(finding));
}

QString conclusion(const Findings& findings)
{
    if (findings.areAllWell())
        return QStringLiteral("All is well.\n");
    const int count = findings.wrongCount();
    return count == 1 ? QStringLiteral("One thing is wrong.\n")
                      : QStringLiteral("%1 things are wrong.\n").arg(count);
}

QJsonObject toJson(const Finding& finding)
{
    QJsonObject object{{QStringLiteral("step"), QString::fromLatin1(infoOf(finding.step).key)},
                       {QStringLiteral("request"), requestOf(finding.step)},
                       {QStringLiteral("verdict"), wordOf(finding.verdict)},
                       {QStringLiteral("words"), finding.words},
                       {QStringLiteral("askedDirectly"), finding.askedDirectly}};
    if (finding.milliseconds >= 0)
        object.insert(QStringLiteral("milliseconds"), finding.milliseconds);
    return object;
}

//! The log lines of a known kind. Other lines may contain any data, such as names of models.
QString knownLines(const QVector<LoggedMessage>& messages, const Redaction& redaction)
{
    QString lines;
    int others = 0;
    for (const LoggedMessage& message : messages) {
        const QString text = redaction.redacted(message.text);
        const QString words = explain(text);
        if (words.isEmpty())
            ++others;
        else
            lines += QStringLiteral("  %1\n    %2\n").arg(text, words);
    }
    return lines + QStringLiteral("  lines of other kinds, which are left out: %1\n").arg(others);
}

} // namespace

QString Report::table() const
{
    QString text =
        QStringLiteral("%1 as %2\n\n").arg(redaction.redacted(options.url), maskedAccount(options.user));
    for (const Finding& finding : findings.all())
        text += rowOf(finding);
    return text + QLatin1Char('\n') + conclusion(findings);
}

QByteArray Report::json() const
{
    QJsonArray steps;
    for (const Finding& finding : findings.all())
        steps.append(toJson(finding));
    return QJsonDocument(QJsonObject{{QStringLiteral("server"), redaction.redacted(options.url)},
                                     {QStringLiteral("account"), maskedAccount(options.user)},
                                     {QStringLiteral("plugin"), pluginVersion},
                                     {QStringLiteral("well"), findings.areAllWell()},
                                     {QStringLiteral("steps"), steps}})
        .toJson();
}

QString Report::text() const
{
    QString text =
        QStringLiteral("nelvo-probe %1, plug-in %2, Qt %3, %4, %5\n")
            .arg(QLatin1String(Version), pluginVersion, QLatin1String(qVersion()),
                 QSysInfo::prettyProductName(), QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    return text + table() + QStringLiteral("\nLog of the plug-in:\n") + knownLines(messages, redaction);
}

} // namespace NelvoDevkit
