#pragma once

#include "tests/updater/installation.h"

//! \brief What replaces an installation after its host has ended: the batch file and `cmd` that runs it, or
//! where there is no `cmd`, a script in its place.
class BatchFile
{
public:
    //! `script` is what runs where there is no `cmd`.
    BatchFile(const Installation& host, const QString& script) : m_host(host), m_script(script) {}

    //! What it leaves behind: of the script that it has run, or of the host that the batch file starts in the
    //! end, with how many arguments. Empty before that.
    QByteArray trace() const;

    //! Lets it wait, once it runs, between `first.txt` and `second.txt`. False where nothing can.
    bool hold() const;
    bool isHeld() const;
    //! Ends it there, as the end of the machine does. False if it can't be found.
    bool kill() const;
    //! A next one need not wait.
    void letGo() const;

private:
    const Installation& m_host;
    const QString m_script;
};
