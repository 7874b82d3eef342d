#pragma once

#include "tests/e2e/pluginhost.h"
#include "tests/support/startedservices.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <string>

//! \file
//! \brief Hosts that do something rash, each in a process of its own.

namespace Survival {

//! The exit status of a process that came through.
constexpr int Survived = 42;

//! The arguments that the host gives its application object.
struct Arguments {
    int& count;
    char** values;
};

//! What a host does. Returns the exit status, or ends the process by itself.
using Scenario = std::function<int(Arguments arguments)>;
using Scenarios = std::map<std::string, Scenario>;

void addEnds(Scenarios& scenarios);
void addWaits(Scenarios& scenarios);
void addObservers(Scenarios& scenarios);
void addWindowEvents(Scenarios& scenarios);
void addUpdates(Scenarios& scenarios);

//! The name of a scenario of three parts.
std::string joined(std::string first, const std::string& second, const std::string& third);

//! Ends the process with another status, and `failure` as the reason.
[[noreturn]] void fail(const char* failure);
//! The same unless `condition` holds.
void require(bool condition, const char* failure);

//! What a host does in answer to something.
using Reaction = std::function<void()>;

void shutDown();
void initialize();
void showLogin();

//! Runs events until `condition` holds.
void waitUntil(const std::function<bool()>& condition, const char* conditionText);

//! \brief Reacts once, from a timer of the GUI thread, as soon as a request has arrived at the services.
class WhenRequested
{
public:
    WhenRequested(const NelvoDevkit::Services& services, const QByteArray& method, const QString& path,
                  const Reaction& reaction);

    bool hasReacted() const { return !m_timer.isActive(); }

private:
    QTimer m_timer;
};

//! \brief Turns a signal that only its name is known of into a reaction, once.
class WhenEmitted : public QObject
{
    Q_OBJECT

public:
    //! `signal` is what SIGNAL gives.
    WhenEmitted(QObject* sender, const char* signal, const Reaction& reaction);

    bool hasReacted() const { return m_hasReacted; }

private Q_SLOTS:
    void react();

private:
    Reaction m_reaction;
    bool m_hasReacted = false;
};

} // namespace Survival
