#pragma once

#include "probe/findings.h"
#include "probe/redaction.h"
#include "probe/trace.h"

#include <optional>

namespace NelvoDevkit {

//! Whether the service redirected a request to its sign-in form.
bool isSentToForm(const TracedExchange& exchange);

//! \brief Decides whether steps pass or fail, from the requests and log lines of a call of the plug-in.
class Judge
{
public:
    //! Owns none of its arguments.
    Judge(const Trace& trace, Findings& findings, const Redaction& redaction);

    //! Starts the next call: all later entries of the trace belong to it.
    void beginCall();
    //! The start of the call, in milliseconds of the trace.
    qint64 callBegan() const;

    //! The call's request for a step; nothing if it sent none.
    std::optional<TracedExchange> exchangeOf(Step step) const;
    //! Sets the step to passed or failed accordingly. Returns whether it passed.
    bool judge(Step step, const QString& wordsIfWell = {});
    void setWell(Step step, const QString& words);
    void setWrong(Step step, const QString& words);
    //! Sets the step to failed, with a reason of Qt or of the plug-in.
    void setFailed(Step step, const QString& reason);
    //! The cookies of the sign-in, in the form of the session: joined with commas.
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
