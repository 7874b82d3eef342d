#pragma once

#include <NelvoSDK/ILoginMgr.h>
#include <NelvoSDK/IMessageMgr.h>

#include <QStringList>
#include <QVector>

#include <functional>

namespace TestSupport {

//! \brief Records the results of sign-ins.
class LoginRecorder final : public NelvoSDK::ILoginObserver
{
public:
    void OnLoginSucceeded(const NelvoSDK::LoginSession& session) override
    {
        sessions.append(session);
        calls.append(QStringLiteral("succeeded"));
        if (whenSucceeded)
            whenSucceeded();
    }
    void OnLoginFailed() override
    {
        ++failures;
        calls.append(QStringLiteral("failed"));
        if (whenFailed)
            whenFailed();
    }

    QVector<NelvoSDK::LoginSession> sessions;
    int failures = 0;
    QStringList calls; //!< "succeeded" or "failed"
    std::function<void()> whenSucceeded;
    std::function<void()> whenFailed;
};

//! \brief Records the messages, each after its kind, such as "first:text".
class MessageRecorder final : public NelvoSDK::IMessageObserver
{
public:
    void OnMessageFirst(const QString& text) override { hear(QStringLiteral("first:") + text); }
    void OnMessageSecond(const QString& text) override { hear(QStringLiteral("second:") + text); }
    void OnMessageThird(const QString& text) override { hear(QStringLiteral("third:") + text); }

    QStringList heard;
    std::function<void()> whenHeard;

private:
    void hear(const QString& message)
    {
        heard.append(message);
        if (whenHeard)
            whenHeard();
    }
};

} // namespace TestSupport
