#pragma once

#include <QJsonObject>
#include <QString>

//! \brief How far an update has come, as the state file tells it.
enum class UpdateState {
    Idle = 0,        //!< nothing is under way
    Downloading = 1, //!< the download of a release runs, or was interrupted
    Downloaded = 2,  //!< the release's package is complete and its checksum was right
};

//! \brief The state file, open for a scope: read by the constructor, written back by the destructor.
//!
//! It is what lets an update go on after a crash. A file that is missing or holds no JSON object is an empty
//! object; one that can't be written keeps its content. Neither is reported.
class UpdateStateFile final
{
public:
    explicit UpdateStateFile(const QString& path);
    //! Writes unless `saved` is set.
    ~UpdateStateFile();
    Q_DISABLE_COPY(UpdateStateFile)

    UpdateState state() const;
    void setState(UpdateState state);
    //! Writes now, for what has to be on disk before the scope ends.
    void write() const;

private:
    const QString m_path;

public:
    QJsonObject json;
    //! The file holds `json` already.
    bool saved = false;
};
