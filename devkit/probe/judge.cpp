#include "probe/judge.h"

#include "probe/directquestion.h"
#include "probe/explanation.h"

#include <algorithm>

namespace NelvoDevkit {

namespace {

const auto FormPath = QStringLiteral("/login");

//! Whether the reply is not what the plug-in needs, by what it logs.
bool isUnfit(Step step, const TracedExchange& exchange)
{
    const StepInfo& info = infoOf(step);
    if (info.failure != nullptr)
        return exchange.logged(QString::fromLatin1(info.failure));
    return info.success != nullptr && !exchange.logged(QString::fromLatin1(info.success));
}

//! The warning that tells why.
QString reasonOf(const TracedExchange& exchange)
{
    const auto reason =
        std::find_if(exchange.messages.begin(), exchange.messages.end(), [](const LoggedMessage& message) {
            return message.type == QtWarningMsg && !explain(message.text).isEmpty();
        });
    return reason == exchange.messages.end() ? QString() : reason->text;
}

//! In words if it is known, or else as it stands.
QString wordsFor(const QString& reason)
{
    QString words = explain(reason);
    if (!words.isEmpty())
        return words;
    return reason.isEmpty() ? QStringLiteral("it failed, and the plug-in does not say why") : reason;
}

} // namespace

bool isSentToForm(const TracedExchange& exchange)
{
    return exchange.answeredBy != exchange.url && exchange.answeredBy.path().endsWith(FormPath);
}

Judge::Judge(const Trace& trace, Findings& findings, const Redaction& redaction)
    : m_trace(trace), m_findings(findings), m_redaction(redaction)
{}

void Judge::beginCall()
{
    m_mark = m_trace.mark();
}

qint64 Judge::callBegan() const
{
    return m_mark.milliseconds;
}

std::optional<TracedExchange> Judge::exchangeOf(Step step) const
{
    const StepInfo& info = infoOf(step);
    const QVector<TracedExchange> exchanges = m_trace.exchanges(m_mark);
    const auto found =
        std::find_if(exchanges.begin(), exchanges.end(), [&info](const TracedExchange& exchange) {
            return exchange.method == info.method && exchange.url.path().endsWith(QLatin1String(info.path));
        });
    return found == exchanges.end() ? std::nullopt : std::make_optional(*found);
}

bool Judge::judge(Step step, const QString& wordsIfWell)
{
    const auto exchange = exchangeOf(step);
    const bool isBehindSignIn = step > Step::SignIn && step < Step::SignOut;
    if (!exchange)
        setFailed(step, {});
    else if (!exchange->error.isEmpty())
        setFailed(step, exchange->error);
    else if (isBehindSignIn && isSentToForm(*exchange))
        setWrong(step, QStringLiteral(
                           "the service sends the question back to its sign-in form: the session is lost"));
    else if (isUnfit(step, *exchange))
        setFailed(step, reasonOf(*exchange));
    else
        setWell(step, wordsIfWell);
    return m_findings.of(step).verdict == Verdict::Well;
}

void Judge::setWell(Step step, const QString& words)
{
    const auto exchange = exchangeOf(step);
    m_findings.set(
        {step, Verdict::Well, exchange ? exchange->milliseconds : -1, m_redaction.redacted(words)});
}

void Judge::setWrong(Step step, const QString& words)
{
    const auto exchange = exchangeOf(step);
    m_findings.set({step, Verdict::Wrong, exchange ? exchange->milliseconds : -1, words});
}

void Judge::setFailed(Step step, const QString& reason)
{
    setWrong(step, wordsFor(m_redaction.redacted(reason)));
    const auto exchange = exchangeOf(step);
    if (!exchange || !reason.startsWith(QStringLiteral("SSL handshake failed")))
        return;
    const QString certificateError = askDirectly(exchange->url).certificateError;
    if (certificateError.isEmpty())
        return;
    const QString meaning = explain(certificateError);
    m_findings.of(step).words += QStringLiteral(": ") + certificateError +
                                 (meaning.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(meaning));
    m_findings.of(step).askedDirectly = true;
}

} // namespace NelvoDevkit
