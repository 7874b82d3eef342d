#pragma once

#include "tests/e2e/pluginhost.h"
#include "tests/support/startedservices.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <string>

//! \file
//! \brief Hosts with unusual calls, each in a separate process.

namespace Survival {

//! The exit status of a process that has passed.
constexpr int Survived = 42;

//! The arguments that the host gives its application object.
struct Arguments {
    int& count;
    char** values;
};

//! The actions of a host. Returns the exit status, or ends the process itself.
using Scenario = std::function<int(Arguments arguments)>;
using Scenarios = std::map<std::string, Scenario>;

void addEnds(Scenarios& scenarios);
void addWaits(Scenarios& scenarios);
void addObservers(Scenarios& scenarios);
void addWindowEvents(Scenarios& scenarios);
void addUpdates(Scenarios& scenarios);

//! The name of a scenario with three parts.
std::string joined(std::string first, const std::string& second, const std::string& third);

//! Ends the process with another status and prints `failure` as the reason.
[[noreturn]] void fail(const char* failure);
//! The same if `condition` is false.
void require(bool condition, const char* failure);

//! The reaction of a host to an event.
using Reaction = std::function<void()>;

void shutDown();
void initialize();
void showLogin();

//! Processes events until `condition` is true.
void waitUntil(const std::function<bool()>& condition, const char* conditionText);

//! \brief Runs a reaction once, from a timer of the GUI thread, as soon as the services have received a
//!   request.
class WhenRequested
{
public:
    WhenRequested(const NelvoDevkit::Services& services, const QByteArray& method, const QString& path,
                  const Reaction& reaction);

    bool hasReacted() const { return !m_timer.isActive(); }

private:
    QTimer m_timer;
};

//! \brief Runs a reaction once when a signal is emitted, which is known by its name only.
class WhenEmitted : public QObject
{
    Q_OBJECT

public:
    //! `signal` is a result of SIGNAL.
    WhenEmitted(QObject* sender, const char* signal, const Reaction& reaction);

    bool hasReacted() const { return m_hasReacted; }

private Q_SLOTS:
    void react();

private:
    Reaction m_reaction;
    bool m_hasReacted = false;
};

} // namespace Survival
