//! \file
//! \brief A host in small that reads the files of the sign-in beside itself and remembers an account there.
//!
//! Prints the two texts that it has read, and the users that it has remembered, each on a line of its own.

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
