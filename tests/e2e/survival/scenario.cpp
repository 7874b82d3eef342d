#include "tests/e2e/survival/scenario.h"

#include <QCoreApplication>
#include <QtTest>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace Survival {

std::string joined(std::string first, const std::string& second, const std::string& third)
{
    return first.append(second).append(third);
}

void fail(const char* failure)
{
    std::fprintf(stderr, "failed: %s\n", failure);
    std::fflush(stderr);
    std::_Exit(EXIT_FAILURE);
}

void require(bool condition, const char* failure)
{
    if (!condition)
        fail(failure);
}

void shutDown()
{
    E2e::plugin()->Shutdown();
}

void initialize()
{
    E2e::plugin()->Initialize();
}

void showLogin()
{
    E2e::plugin()->GetLoginMgr()->GetLoginActor()->ShowLogin();
}

void waitUntil(const std::function<bool()>& condition, const char* conditionText)
{
    constexpr int hangMilliseconds = 60000;
    require(QTest::qWaitFor(condition, hangMilliseconds), conditionText);
}

WhenRequested::WhenRequested(const NelvoDevkit::Services& services, const QByteArray& method,
                             const QString& path, const Reaction& reaction)
{
    const auto look = [this, &services, method, path, reaction] {
        const QVector<NelvoDevkit::LoggedRequest> requests = services.log().requests();
        for (const NelvoDevkit::LoggedRequest& request : requests) {
            if (request.method == method && request.path() == path.toUtf8()) {
                m_timer.stop();
                reaction();
                return;
            }
        }
    };
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, look);
    m_timer.start(1);
}

WhenEmitted::WhenEmitted(QObject* sender, const char* signal, const Reaction& reaction) : m_reaction(reaction)
{
    require(connect(sender, signal, this, SLOT(react())), signal);
}

void WhenEmitted::react()
{
    if (!std::exchange(m_hasReacted, true))
        m_reaction();
}

} // namespace Survival
