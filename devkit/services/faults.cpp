#include "services/faults.h"

#include <QStringList>

#include <algorithm>
#include <array>
#include <chrono>

namespace NelvoDevkit {

namespace {

struct NamedFault {
    Fault fault;
    const char* name;
};

constexpr std::array NamedFaults = {
    NamedFault{Fault::Refuse, "refuse"},
    NamedFault{Fault::Reset, "reset"},
    NamedFault{Fault::Stall, "stall"},
    NamedFault{Fault::Delay, "delay"},
    NamedFault{Fault::CutBody, "cut-body"},
    NamedFault{Fault::Status, "status"},
    NamedFault{Fault::NotJson, "not-json"},
    NamedFault{Fault::WrongJson, "wrong-json"},
    NamedFault{Fault::Redirect, "redirect"},
    NamedFault{Fault::EndlessRedirect, "endless-redirect"},
    NamedFault{Fault::LoseSession, "lose-session"},
};

constexpr char RedirectMark[] = "redirected=1";

bool applies(const FaultRule& rule, const HttpRequest& request)
{
    if (!rule.path.isEmpty() && rule.path.toUtf8() != request.path())
        return false;
    if (!rule.method.isEmpty() && rule.method != request.method)
        return false;
    return rule.fault != Fault::Redirect || !request.target.endsWith(RedirectMark);
}

} // namespace

QString faultName(Fault fault)
{
    const auto found = std::find_if(NamedFaults.begin(), NamedFaults.end(),
                                    [fault](const NamedFault& named) { return named.fault == fault; });
    return found == NamedFaults.end() ? QString() : QString::fromLatin1(found->name);
}

std::optional<Fault> faultFromName(const QString& name)
{
    const auto found = std::find_if(NamedFaults.begin(), NamedFaults.end(), [&name](const NamedFault& named) {
        return name == QLatin1String(named.name);
    });
    return found == NamedFaults.end() ? std::nullopt : std::make_optional(found->fault);
}

QStringList faultNames()
{
    QStringList names;
    for (const NamedFault& named : NamedFaults)
        names.append(QString::fromLatin1(named.name));
    return names;
}

bool refusesEverything(const FaultRule& rule)
{
    return rule.fault == Fault::Refuse && rule.path.isEmpty() && rule.method.isEmpty();
}

QByteArray markedTarget(const HttpRequest& request)
{
    return request.target + (request.target.contains('?') ? '&' : '?') + RedirectMark;
}

void FaultBook::add(const FaultRule& rule)
{
    const std::lock_guard lock(m_mutex);
    m_rules.append(rule);
}

QVector<FaultRule> FaultBook::rules() const
{
    const std::lock_guard lock(m_mutex);
    return m_rules;
}

void FaultBook::clear()
{
    {
        const std::lock_guard lock(m_mutex);
        m_rules.clear();
        ++m_era;
    }
    m_cleared.notify_all();
}

std::optional<FaultBook::Strike> FaultBook::strike(const HttpRequest& request)
{
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_rules.begin(), m_rules.end(),
                                    [&request](const FaultRule& rule) { return applies(rule, request); });
    if (found == m_rules.end())
        return std::nullopt;
    const Strike strike{*found, m_era};
    if (found->once)
        m_rules.erase(found);
    return strike;
}

void FaultBook::hold(const Strike& strike)
{
    std::unique_lock lock(m_mutex);
    const auto cleared = [this, &strike] { return m_era != strike.era; };
    if (strike.rule.fault == Fault::Stall)
        m_cleared.wait(lock, cleared);
    else
        m_cleared.wait_for(lock, std::chrono::milliseconds(strike.rule.value), cleared);
}

} // namespace NelvoDevkit
