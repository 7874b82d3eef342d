#pragma once

#include "services/httpmessage.h"

#include <QString>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace NelvoDevkit {

//! \brief What a service does wrong.
enum class Fault {
    Refuse,          //!< drops the connection unanswered and stops listening, until clearFaults
    Reset,           //!< reads the request and resets the connection
    Stall,           //!< reads the request and never answers, until clearFaults; then answers normally
    Delay,           //!< answers normally after FaultRule::value milliseconds
    CutBody,         //!< announces the whole body, sends half of it and closes
    Status,          //!< answers with the HTTP status FaultRule::value and a short text
    NotJson,         //!< answers 200 with a body that is no JSON
    WrongJson,       //!< answers 200 with JSON of the other kind: an object for an array, and vice versa
    Redirect,        //!< redirects once to the same path, which then answers normally
    EndlessRedirect, //!< redirects to itself for ever
    LoseSession,     //!< forgets the client's session before it handles the request
};

//! \brief A fault and where it strikes.
struct FaultRule {
    Fault fault = Fault::Status;
    //! Path it applies to, without query, such as "/login"; empty for every path of every service.
    QString path;
    //! HTTP method it applies to; empty for every method.
    QByteArray method;
    //! Milliseconds of Delay, status of Status; unused otherwise.
    int value = 0;
    //! Strikes the next matching request only.
    bool once = false;
};

//! Name of a fault on the control path and in documents, such as "cut-body".
QString faultName(Fault fault);
//! The fault of that name, if there is one.
std::optional<Fault> faultFromName(const QString& name);
//! The names of all faults, in the order of the enumeration.
QStringList faultNames();

//! Whether the rule makes all services refuse from the moment on which it is added.
bool refusesEverything(const FaultRule& rule);

//! Where a Redirect leads: the request's own target with a mark, by which the rule lets it pass.
QByteArray markedTarget(const HttpRequest& request);

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
    std::optional<Strike> strike(const HttpRequest& request);
    //! Waits out a Delay, or waits under a Stall until the rules are cleared.
    void hold(const Strike& strike);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cleared;
    QVector<FaultRule> m_rules;
    quint64 m_era = 0;
};

} // namespace NelvoDevkit
