#pragma once

#include "probe/findings.h"
#include "probe/probeoptions.h"
#include "probe/redaction.h"
#include "probe/trace.h"

#include <QByteArray>

namespace NelvoDevkit {

//! \brief What nelvo-probe has to say, in the forms in which it says it. No form holds a secret.
struct Report {
    ProbeOptions options;
    Findings findings;
    QString pluginVersion;
    QVector<LoggedMessage> messages;
    Redaction redaction;

    //! For the terminal.
    QString table() const;
    //! For tools.
    QByteArray json() const;
    //! For a bug report: the table, the environment, and what of the log is known not to be about customers'
    //! data.
    QString text() const;
};

} // namespace NelvoDevkit
