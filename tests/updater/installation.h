#pragma once

#include <QByteArray>
#include <QDir>
#include <QJsonObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

//! \brief A host in a directory of its own, version 1.0.0, run again and again there.
//!
//! The host writes what happens in it to its standard output: a line for each event, which a tab parts from
//! what the host knows at that moment.
class Installation
{
public:
    //! Milliseconds to wait for what must come.
    static constexpr int Patience = 60000;

    //! A subdirectory whose path has no blank, so that the batch file can be started there.
    inline static const QString WithoutBlank = QStringLiteral("app");

    //! Installs a copy of the program, in a directory of its own below `parent`. By default the batch file
    //! can't be started, and what it would use up stays.
    explicit Installation(const QString& program, const QString& subdirectory = QStringLiteral("an app"),
                          const QString& parent = QDir::tempPath());
    ~Installation();
    Q_DISABLE_COPY(Installation)

    QString path(const QString& name) const { return m_home + QLatin1Char('/') + name; }
    //! The directory that holds the subdirectory and the user's settings.
    QString root() const { return m_dir.path(); }

    QByteArray content(const QString& name) const;
    QJsonObject json(const QString& name) const;
    bool exists(const QString& name) const;
    void write(const QString& name, const QByteArray& content) const;
    //! Writes a state file of the release 1.0.1.
    void writeState(int updateState) const;
    //! Where it takes a permission to start a file, the one that is there before lends its own to the batch
    //! file.
    void makeBatchFileStartable() const;
    //! What is on record of an update that is under way; -1 if nothing is.
    int state() const { return json(QStringLiteral("NelvoUpdateState.dat")).value("updateState").toInt(-1); }
    QString configVersion() const;
    QString settingsVersion() const;

    void start(const QStringList& arguments);
    //! Runs it to its end. False if it doesn't end well.
    bool run(const QStringList& arguments);
    //! Waits for the end of what was started. False if it doesn't end well.
    bool ends();
    //! Waits for such an event.
    bool reaches(const QString& event);
    //! Ends it without a word, as a crash does.
    void kill();
    //! What was started has printed so far.
    const QByteArray& output() const { return m_output; }
    bool runs() const { return m_process.state() == QProcess::Running; }

    //! What happened in it, in order.
    QStringList events() const { return column(0); }
    //! The same without what depends on the time that passes: the progress before its end, and how long that
    //! was shown.
    QStringList orderedEvents() const;
    //! What it knew at the last event that begins like that.
    QString recordsAt(const QString& event) const;

private:
    QStringList column(int index) const;

    QTemporaryDir m_dir;
    QString m_home;
    QString m_program;
    QProcess m_process;
    QByteArray m_output;
};

//! Makes a pipe that holds whoever opens it until the other end is opened too. False where there are none.
bool makeFifo(const QString& path);
