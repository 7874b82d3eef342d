#pragma once

#include "probe/steps.h"

#include <QString>
#include <QVector>

namespace NelvoDevkit {

enum class Verdict {
    Well,
    Wrong,
    NotAsked,   //!< nobody wanted it
    NotReached, //!< what comes before it is wrong
};

//! The word for it, for tools and people alike.
QString wordOf(Verdict verdict);

//! \brief What became of a step.
struct Finding {
    Step step;
    Verdict verdict = Verdict::NotReached;
    //! How long it took; -1 if that is not known.
    qint64 milliseconds = -1;
    //! What was found, or what is wrong, for people.
    QString words = {};
    //! Whether the words rest on a question that the probe asked beside the plug-in.
    bool askedDirectly = false;
};

//! \brief One finding for each step, in their order. None is reached at first.
class Findings
{
public:
    Findings();

    void set(const Finding& finding);
    Finding& of(Step step);
    const QVector<Finding>& all() const { return m_findings; }
    int wrongCount() const;
    //! Whether every step that was wanted has been reached and is well.
    bool areAllWell() const;

private:
    QVector<Finding> m_findings;
};

} // namespace NelvoDevkit
