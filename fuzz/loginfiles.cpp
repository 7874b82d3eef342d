#include "fuzz/support.h"
#include "login/addressfiles.h"
#include "login/logincache.h"

using namespace NelvoPlugin;

//! The cache of accounts and the two files with addresses.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray content = Fuzz::bytesOf(data, size);
    for (const char* name : {"loginchache.json", "defaultServerAddress.json", "ProxyUrlSuffix.json"})
        Fuzz::writeFile(name, content);
    readDefaultServer();
    readUrlSuffix();

    std::list<UserCacheEntry> users;
    CLoginCache::readUsers(users);
    const std::size_t count = users.size();
    CLoginCache::writeUsers(users);
    CLoginCache::readUsers(users);
    Fuzz::require(users.size() == count);

    const auto user = QStringLiteral("lina");
    CLoginCache::updateUser(user, QStringLiteral("secret"), QStringLiteral("http://cim"), {});
    CLoginCache::readUsers(users);
    Fuzz::require(users.front().user == user && users.front().passwd == QStringLiteral("secret"));
    return 0;
}
