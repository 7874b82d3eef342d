#pragma once

#include "services/httpmessage.h"

#include <QString>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace NelvoDevkit {

//! \brief The wrong behaviour of a service.
enum class Fault {
    Refuse,          //!< closes the connection without a reply and stops listening, until clearFaults
    Reset,           //!< reads the request and resets the connection
    Stall,           //!< reads the request and does not reply until clearFaults; then replies normally
    Delay,           //!< replies normally after FaultRule::value milliseconds
    CutBody,         //!< sends the size of the whole body, half of the body, and closes
    Status,          //!< replies with the HTTP status FaultRule::value and a short text
    NotJson,         //!< replies with 200 and a body that is no JSON
    WrongJson,       //!< replies with 200 and JSON of the other kind: an object for an array, and vice versa
    Redirect,        //!< redirects once to the same path, which then replies normally
    EndlessRedirect, //!< redirects to itself forever
    LoseSession,     //!< drops the client's session before it handles the request
};

//! \brief A fault and the requests that it affects.
struct FaultRule {
    Fault fault = Fault::Status;
    //! Affected path, without query, such as "/login"; empty for every path of every service.
    QString path;
    //! Affected HTTP method; empty for every method.
    QByteArray method;
    //! Milliseconds of Delay, status of Status; unused otherwise.
    int value = 0;
    //! Affects only the next matching request.
    bool once = false;
};

//! Name of a fault in the control path and in documents, such as "cut-body".
QString faultName(Fault fault);
//! The fault with that name, if it exists.
std::optional<Fault> faultFromName(const QString& name);
//! The names of all faults, in the order of the enumeration.
QStringList faultNames();

//! Whether the rule makes all services refuse connections as soon as it is added.
bool refusesEverything(const FaultRule& rule);

//! The target of a Redirect: the request's own target with a mark, which exempts it from the rule.
QByteArray markedTarget(const HttpRequest& request);

//! \brief The active fault rules, under which requests wait. Any thread.
class FaultBook
{
public:
    //! A rule that affects a request.
    struct Strike {
        FaultRule rule;
        quint64 era = 0; //!< how often the rules had been cleared before
    };

    void add(const FaultRule& rule);
    QVector<FaultRule> rules() const;
    //! Removes every rule and ends all waits in hold().
    void clear();

    //! The first rule that applies to the request. Removes a rule that affects one request only.
    std::optional<Strike> strike(const HttpRequest& request);
    //! Waits for the time of a Delay; under a Stall until the rules are cleared.
    void hold(const Strike& strike);

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_cleared;
    QVector<FaultRule> m_rules;
    quint64 m_era = 0;
};

} // namespace NelvoDevkit
