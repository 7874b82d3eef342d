#pragma once

#include "services/bimmodels.h"
#include "services/organisation.h"
#include "services/release.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <optional>
#include <vector>

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

//! \brief What the editor service keeps of an enterprise.
struct EnterpriseHoldings {
    qint64 enterpriseId = 0;
    OrgNode organisation;
    QVector<SceneProject> projects;
    ModelLists models;
};

//! \brief Who may sign in, where they belong, and what there is.
struct Seed {
    QVector<Account> accounts;
    std::vector<EnterpriseHoldings> holdings; //!< one for each enterprise
    QString updateToken;                      //!< lets one ask for releases; empty if nothing does
    QMap<QString, Release> releases;          //!< by product
    QMap<QString, QByteArray> packages;       //!< by name

    //! The account of that user name, or null.
    const Account* find(const QString& user) const;
};

//! Reads a seed file; with an empty name the one that comes with the simulator. On failure returns
//! nothing and tells in `error`, which must not be null, what is wrong with which file.
std::optional<Seed> loadSeed(const QString& fileName, QString* error);

} // namespace NelvoDevkit
