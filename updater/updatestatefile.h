#pragma once

#include <QJsonObject>
#include <QString>

//! \brief The progress of an update, as recorded in the state file.
enum class UpdateState {
    Idle = 0,        //!< no update is running
    Downloading = 1, //!< the download of a release runs or was interrupted
    Downloaded = 2,  //!< the release's package is complete and its checksum was correct
};

//! \brief The state file, open for a scope: the constructor reads it, the destructor writes it.
//!
//! With it, an update can continue after a crash. If the file is missing or holds no JSON object, `json` is
//! an empty object. If the file cannot be written, it keeps its content. Neither is reported.
class UpdateStateFile final
{
public:
    explicit UpdateStateFile(const QString& path);
    //! Writes unless `saved` is set.
    ~UpdateStateFile();
    Q_DISABLE_COPY(UpdateStateFile)

    UpdateState state() const;
    void setState(UpdateState state);
    //! Writes now, for values that must be on disk before the scope ends.
    void write() const;

private:
    const QString m_path;

public:
    QJsonObject json;
    //! The file already contains `json`.
    bool saved = false;
};
