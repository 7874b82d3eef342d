//! \file
//! \brief A small host that reads the sign-in's files in its directory and stores an account there.
//!
//! Prints the two addresses from the files, then the stored users, one text per line.

#include "login/addressfiles.h"
#include "login/logincache.h"

#include <QCoreApplication>

#include <iostream>

using NelvoPlugin::CLoginCache;

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    std::cout << NelvoPlugin::readDefaultServer().toStdString() << '\n'
              << NelvoPlugin::readUrlSuffix().toStdString() << '\n';
    CLoginCache::updateUser(QStringLiteral("lina"), QStringLiteral("secret"), QStringLiteral("http://s"), {});
    std::list<NelvoPlugin::UserCacheEntry> users;
    CLoginCache::readUsers(users);
    for (const NelvoPlugin::UserCacheEntry& user : users)
        std::cout << user.user.toStdString() << '\n';
}
