#include "probe/findings.h"

#include <algorithm>

namespace NelvoDevkit {

QString wordOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Well:
        return QStringLiteral("well");
    case Verdict::Wrong:
        return QStringLiteral("wrong");
    case Verdict::NotAsked:
        return QStringLiteral("not asked");
    case Verdict::NotReached:
        return QStringLiteral("not reached");
    }
    Q_UNREACHABLE();
}

Findings::Findings()
{
    for (const StepInfo& info : allSteps())
        m_findings.append({info.step});
}

void Findings::set(const Finding& finding)
{
    of(finding.step) = finding;
}

Finding& Findings::of(Step step)
{
    return m_findings[static_cast<int>(step)];
}

int Findings::wrongCount() const
{
    return static_cast<int>(std::count_if(m_findings.begin(), m_findings.end(), [](const Finding& finding) {
        return finding.verdict == Verdict::Wrong;
    }));
}

bool Findings::areAllWell() const
{
    return std::all_of(m_findings.begin(), m_findings.end(), [](const Finding& finding) {
        return finding.verdict == Verdict::Well || finding.verdict == Verdict::NotAsked;
    });
}

} // namespace NelvoDevkit
