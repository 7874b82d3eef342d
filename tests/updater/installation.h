#pragma once

#include <QByteArray>
#include <QDir>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! \brief A small host of version 1.0.0 in its own directory. It can run several times.
//!
//! The host writes a line for each event to its standard output: the event, a tab, and the state of the host
//! at that moment.
class Installation
{
public:
    //! Milliseconds after which a wait fails.
    static constexpr int Patience = 60000;

    //! A subdirectory without a blank in its path, so that the batch file can be started there.
    inline static const QString WithoutBlank = QStringLiteral("app");

    //! Installs a copy of the program in its own directory below `parent`. The default path contains a blank.
    //! So the batch file cannot be started, and the files that it would remove stay.
    explicit Installation(const QString& program, const QString& subdirectory = QStringLiteral("an app"),
                          const QString& parent = QDir::tempPath());
    ~Installation();
    Q_DISABLE_COPY(Installation)

    QString path(const QString& name) const { return m_home + QLatin1Char('/') + name; }
    //! The directory that contains the subdirectory and the user's settings.
    QString root() const { return m_dir.path(); }

    QByteArray content(const QString& name) const;
    QJsonObject json(const QString& name) const;
    bool exists(const QString& name) const;
    void write(const QString& name, const QByteArray& content) const;
    //! Writes a state file of the release 1.0.1.
    void writeState(int updateState) const;
    //! Writes an executable `cover.bat`. The updater replaces only its content, so the batch file is
    //! executable on systems that need a permission for this.
    void makeBatchFileStartable() const;
    //! The state in the state file; -1 if there is none.
    int state() const { return json(QStringLiteral("NelvoUpdateState.dat")).value("updateState").toInt(-1); }
    QString configVersion() const;
    QString settingsVersion() const;

    void start(const QStringList& arguments);
    //! Runs the host to its end. Returns false unless it exits with status 0.
    bool run(const QStringList& arguments);
    //! Waits for the end of the started host. Returns false unless it exits with status 0.
    bool ends();
    //! Waits for this event. Returns false if it does not occur.
    bool reaches(const QString& event);
    //! Kills the host, as a crash would.
    void kill();
    //! The output of the last start, as far as it has been read.
    const QByteArray& output() const { return m_output; }
    bool runs() const { return m_process.state() == QProcess::Running; }

    //! The events of the last start, in order.
    QStringList events() const { return column(0); }
    //! The events that do not depend on timing: without the progress below 1, and without the time for which
    //! the end was shown.
    QStringList orderedEvents() const;
    //! The state of the host at the last event that begins with this text.
    QString recordsAt(const QString& event) const;

private:
    QStringList column(int index) const;

    QTemporaryDir m_dir;
    QString m_home;
    QString m_program;
    QProcess m_process;
    QByteArray m_output;
};

//! Creates a named pipe: a process that opens it waits until the other end is opened too. Returns false if
//! the system has no such pipes.
bool makeFifo(const QString& path);
