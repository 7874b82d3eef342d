#pragma once

#include "probe/findings.h"
#include "probe/probeoptions.h"
#include "probe/redaction.h"
#include "probe/trace.h"

#include <QByteArray>

namespace NelvoDevkit {

//! \brief The result of nelvo-probe in its output formats, none of which contains a secret.
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
    //! For a bug report: the table, the environment, and those log lines that contain no data of customers.
    QString text() const;
};

} // namespace NelvoDevkit
