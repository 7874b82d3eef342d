#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace NelvoDevkit {

//! \brief A second reference host with a sign-in from the command line: a separate process with a copy of
//!   this application folder. The destructor ends it.
class OtherHost
{
public:
    ~OtherHost();

    //! Starts the host. On failure returns false and sets `error` to the reason.
    bool start(const QString& user, const QString& password, QString* error);
    //! Whether the host has printed that a user is signed in.
    bool isSignedIn();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    //! The output of the host so far.
    QString output() const { return QString::fromLocal8Bit(m_output); }

private:
    bool copyApplication(QString* error) const;

    const QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
};

} // namespace NelvoDevkit
