#pragma once

#include <services/services.h>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace NelvoDevkit {

//! Name of a fault on the control path and in documents, such as "cut-body".
QString faultName(Fault fault);
//! The fault of that name, if there is one.
std::optional<Fault> faultFromName(const QString& name);
//! The names of all faults, in the order of the enumeration.
QStringList faultNames();

//! Whether the rule makes all services refuse from the moment on which it is added.
bool refusesEverything(const FaultRule& rule);

//! Where a Redirect leads: the request's own target with a mark, by which the rule lets it pass.
QByteArray markedTarget(const LoggedRequest& request);

//! \brief The fault rules in force, and the place where requests wait under them. Any thread.
class FaultBook
{
public:
    //! A rule that has struck.
    struct Strike {
        FaultRule rule;
        quint64 era = 0; //!< how often the rules had been cleared before
    };

    void add(const FaultRule& rule);
    QVector<FaultRule> rules() const;
    //! Removes every rule and lets all go on that hold() keeps waiting.
    void clear();

    //! The first rule that applies to the request. One that strikes once is removed.
    std::optional<Strike> strike(const LoggedRequest& request);
    //! Waits out a Delay, or waits under a Stall until the rules are cleared.
    void hold(const Strike& strike);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cleared;
    QVector<FaultRule> m_rules;
    quint64 m_era = 0;
};

} // namespace NelvoDevkit
