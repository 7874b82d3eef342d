#pragma once

#include "tests/support/messagelog.h"

#include <QObject>

#include <memory>

namespace TestSupport {

//! \brief Lets a test see the warnings of the pages, and what else they log.
class WarningLog : public QObject
{
    Q_OBJECT

public:
    //! Begins afresh. To be called in each test, since the test library puts its own message handler in
    //! place.
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

    //! What the pages put on the console since the start or the last taking of warnings.
    Q_INVOKABLE QStringList debugs() const { return m_log->debugs(); }

    //! The last warnings; from here on messages go where they went before.
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
