#pragma once

#include <QString>
#include <QVector>

#include <optional>

namespace NelvoDevkit {

struct Enterprise {
    qint64 id = 0;
    QString name;
};

struct Account {
    QString user;
    QString password; //!< in clear text
    QVector<Enterprise> enterprises;
};

//! \brief Who may sign in, and where they belong.
struct Seed {
    QVector<Account> accounts;

    //! The account of that user name, or null.
    const Account* find(const QString& user) const;
};

//! Reads a seed file; with an empty name the one that comes with the simulator. On failure returns
//! nothing and tells in `error`, which must not be null, what is wrong with which file.
std::optional<Seed> loadSeed(const QString& fileName, QString* error);

} // namespace NelvoDevkit
