#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace NelvoDevkit {

//! \brief A second reference host, signed in by itself: a process of its own, with a copy of this one's
//! application folder. Ends with this object.
class OtherHost
{
public:
    ~OtherHost();

    //! Starts it. On failure returns false and tells why in `error`.
    bool start(const QString& user, const QString& password, QString* error);
    //! Whether it has told that somebody is signed in.
    bool isSignedIn();
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    //! What it has written so far.
    QString output() const { return QString::fromLocal8Bit(m_output); }

private:
    bool copyApplication(QString* error) const;

    const QTemporaryDir m_folder;
    QProcess m_process;
    QByteArray m_output;
};

} // namespace NelvoDevkit
