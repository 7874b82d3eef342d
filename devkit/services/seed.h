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

//! \brief The editor service's data of an enterprise.
struct EnterpriseHoldings {
    qint64 enterpriseId = 0;
    OrgNode organisation;
    QVector<SceneProject> projects;
    ModelLists models;
};

//! \brief The accounts, the enterprises and their data.
struct Seed {
    QVector<Account> accounts;
    std::vector<EnterpriseHoldings> holdings; //!< one for each enterprise
    QString updateToken;                      //!< authorises requests for releases; empty if none does
    QMap<QString, Release> releases;          //!< by product
    QMap<QString, QByteArray> packages;       //!< by name

    //! The account with that user name, or null.
    const Account* find(const QString& user) const;
};

//! Reads a seed file; with an empty name the built-in one. On failure returns nothing and sets `error`, which
//! must not be null, to the file and the reason.
std::optional<Seed> loadSeed(const QString& fileName, QString* error);

} // namespace NelvoDevkit
