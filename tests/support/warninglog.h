#pragma once

#include "tests/support/messagelog.h"

#include <QObject>

#include <memory>

namespace TestSupport {

//! \brief Provides the pages' warnings and other log messages to a test.
class WarningLog : public QObject
{
    Q_OBJECT

public:
    //! Starts a new log. Call it in each test, because the test library installs its own message handler.
    Q_INVOKABLE void start()
    {
        m_log.reset();
        m_log = std::make_unique<MessageLog>();
    }

    //! The warnings since the start or the last call.
    Q_INVOKABLE QStringList take()
    {
        QStringList warnings = m_log->warnings();
        m_log->clear();
        return warnings;
    }

    //! The console messages of the pages since the start or the last call of take.
    Q_INVOKABLE QStringList debugs() const { return m_log->debugs(); }

    //! The last warnings. From now on the previous message handler receives all messages.
    Q_INVOKABLE QStringList finish()
    {
        QStringList warnings = take();
        m_log.reset();
        return warnings;
    }

private:
    std::unique_ptr<MessageLog> m_log;
};

} // namespace TestSupport
