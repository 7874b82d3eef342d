#include "probe/judge.h"

#include "probe/directquestion.h"
#include "probe/explanation.h"

#include <QDateTime>
#include <QNetworkCookie>
#include <QRegularExpression>

#include <algorithm>

namespace NelvoDevkit {

namespace {

const auto FormPath = QStringLiteral("/login");

//! Whether the reply does not have the form that the plug-in needs, according to its log.
bool isUnfit(Step step, const TracedExchange& exchange)
{
    const StepInfo& info = infoOf(step);
    if (info.failure != nullptr)
        return exchange.logged(QString::fromLatin1(info.failure));
    return info.success != nullptr && !exchange.logged(QString::fromLatin1(info.success));
}

//! The warning with the reason.
QString reasonOf(const TracedExchange& exchange)
{
    const auto reason =
        std::find_if(exchange.messages.begin(), exchange.messages.end(), [](const LoggedMessage& message) {
            return message.type == QtWarningMsg && !explain(message.text).isEmpty();
        });
    return reason == exchange.messages.end() ? QString() : reason->text;
}

//! The explanation of a known reason; otherwise the reason itself.
QString wordsFor(const QString& reason)
{
    QString words = explain(reason);
    if (!words.isEmpty())
        return words;
    return reason.isEmpty() ? QStringLiteral("it failed, and the plug-in does not say why") : reason;
}

bool isBehindSignIn(Step step)
{
    return step > Step::SignIn && step < Step::SignOut && step != Step::Updates;
}

//! The names of the cookies that the request did not contain, with the attributes that excluded them.
QStringList cookiesLeftBehind(const QString& cookies, const QStringList& sent)
{
    // A comma inside a date is not followed by a name and an equals sign.
    static const QRegularExpression betweenCookies(QStringLiteral(",(?=[^;,=\\s]+=)"));
    QStringList names;
    const QStringList all = cookies.split(betweenCookies, Qt::SkipEmptyParts);
    for (const QString& text : all) {
        const QList<QNetworkCookie> parsed = QNetworkCookie::parseCookies(text.toUtf8());
        if (parsed.isEmpty() || sent.contains(QString::fromUtf8(parsed.first().name())))
            continue;
        const QNetworkCookie& cookie = parsed.first();
        QString words = QStringLiteral("%1 (Domain %2, Path %3")
                            .arg(QString::fromUtf8(cookie.name()), cookie.domain(), cookie.path());
        if (cookie.isSecure())
            words += QStringLiteral(", Secure");
        if (!cookie.isSessionCookie())
            words += QStringLiteral(", expires ") + cookie.expirationDate().toString(Qt::ISODate);
        names.append(words + QLatin1Char(')'));
    }
    return names;
}

QString unknownSessionWords(const TracedExchange& exchange, const QString& cookies)
{
    QString words = exchange.cookies.isEmpty()
                        ? QStringLiteral("the session is unknown; the request carried no cookie")
                        : QStringLiteral("the session is unknown; the request carried the cookies ") +
                              exchange.cookies.join(QStringLiteral(", "));
    const QStringList left = cookiesLeftBehind(cookies, exchange.cookies);
    if (!left.isEmpty())
        words += QStringLiteral(", but not ") + left.join(QStringLiteral(", "));
    return words + QStringLiteral(": look at Domain, Path and expiry of the service's cookies");
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
    if (!exchange)
        setFailed(step, {});
    else if (!exchange->error.isEmpty())
        setFailed(step, exchange->error);
    else if (isBehindSignIn(step) && isSentToForm(*exchange))
        setWrong(step, QStringLiteral(
                           "the service redirects the request to its sign-in form: the session is lost"));
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

//! A service that does not know the session replies with 401.
QString Judge::httpWords(Step step, const TracedExchange& exchange) const
{
    constexpr int unauthorized = 401;
    const QString words = httpErrorWords(exchange.status, exchange.error, exchange.answeredBy);
    const bool isOfSession = exchange.status == unauthorized && isBehindSignIn(step);
    return isOfSession ? words + QStringLiteral(": ") + unknownSessionWords(exchange, m_cookies) : words;
}

void Judge::setFailed(Step step, const QString& reason)
{
    const auto exchange = exchangeOf(step);
    setWrong(step, m_redaction.redacted(exchange && exchange->status >= 400
                                            ? httpWords(step, *exchange)
                                            : wordsFor(m_redaction.redacted(reason))));
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
