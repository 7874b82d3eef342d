#pragma once

#include "tests/updater/installation.h"

//! \brief The batch file that replaces an installation after its host has ended. On systems without `cmd`, a
//! script takes its place.
class BatchFile
{
public:
    //! `script` is the path of the script on systems without `cmd`.
    BatchFile(const Installation& host, const QString& script) : m_host(host), m_script(script) {}

    //! The trace file of the script, or of the host that the batch file starts at its end. It contains the
    //! number of arguments. Empty if there is no file yet.
    QByteArray trace() const;

    //! Makes the next run stop after `first.txt`, before `second.txt` is complete. Returns false if the
    //! system cannot do this.
    bool hold() const;
    bool isHeld() const;
    //! Kills the stopped run, as a power failure would. Returns false if the run is not found.
    bool kill() const;
    //! Makes later runs continue without a stop.
    void letGo() const;

private:
    const Installation& m_host;
    const QString m_script;
};
