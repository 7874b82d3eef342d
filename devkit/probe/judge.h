#pragma once

#include "probe/findings.h"
#include "probe/redaction.h"
#include "probe/trace.h"

#include <optional>

namespace NelvoDevkit {

//! Whether the service sent a question on to its sign-in form.
bool isSentToForm(const TracedExchange& exchange);

//! \brief Finds steps well or wrong by what a call of the plug-in did for them, and says so in words.
class Judge
{
public:
    //! Nothing is owned.
    Judge(const Trace& trace, Findings& findings, const Redaction& redaction);

    //! What is traced from here on belongs to the next call.
    void beginCall();
    //! When that was, in milliseconds of the trace.
    qint64 callBegan() const;

    //! What the call did for a step; nothing if it came to none.
    std::optional<TracedExchange> exchangeOf(Step step) const;
    //! Finds a step well or wrong by that. Returns whether it is well.
    bool judge(Step step, const QString& wordsIfWell = {});
    void setWell(Step step, const QString& words);
    void setWrong(Step step, const QString& words);
    //! Wrong for a reason that Qt or the plug-in gives.
    void setFailed(Step step, const QString& reason);
    //! The cookies that the sign-in has left behind, as the session has them: joined with commas.
    void setCookies(const QString& cookies) { m_cookies = cookies; }

private:
    QString httpWords(Step step, const TracedExchange& exchange) const;

    const Trace& m_trace;
    Findings& m_findings;
    const Redaction& m_redaction;
    Trace::Mark m_mark;
    QString m_cookies;
};

} // namespace NelvoDevkit
