#pragma once

#include "probe/steps.h"

#include <QString>
#include <QVector>

namespace NelvoDevkit {

enum class Verdict {
    Well,
    Wrong,
    NotAsked,   //!< not requested by the options
    NotReached, //!< an earlier step failed
};

//! The word for the verdict, for tools and users.
QString wordOf(Verdict verdict);

//! \brief The result of a step.
struct Finding {
    Step step;
    Verdict verdict = Verdict::NotReached;
    //! Duration; -1 if it is unknown.
    qint64 milliseconds = -1;
    //! The result or the error, for the user.
    QString words = {};
    //! Whether the words are based on a request of the probe itself.
    bool askedDirectly = false;
};

//! \brief The findings of all steps, in their order. At first none is reached.
class Findings
{
public:
    Findings();

    void set(const Finding& finding);
    Finding& of(Step step);
    const QVector<Finding>& all() const { return m_findings; }
    int wrongCount() const;
    //! Whether every requested step has been reached and has passed.
    bool areAllWell() const;

private:
    QVector<Finding> m_findings;
};

} // namespace NelvoDevkit
