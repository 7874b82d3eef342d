#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <list>

namespace NelvoPlugin {

//! \brief What is remembered of one user of the login window.
struct UserCacheEntry {
    QString user;           //!< as typed
    QString passwd;         //!< clear password, or empty if it is not kept
    QStringList cimUrlList; //!< addresses of sign-in services, most recent first
    QStringList pdsUrlList; //!< PDS addresses, most recent first
};

//! \brief `loginchache.json` beside the executable: the accounts used so far, most recent first.
//!
//! Each operation works on the file directly; nothing is kept in between. A file that cannot be read is an
//! empty cache, one that cannot be written keeps its content; neither is reported. There is no lock against
//! other processes. GUI thread.
class CLoginCache
{
public:
    static QString cacheFilePath();

    //! Replaces `users` with the content of the file.
    static void readUsers(std::list<UserCacheEntry>& users);
    //! Replaces the content of the file, in place.
    static void writeUsers(const std::list<UserCacheEntry>& users);
    //! Puts the user in front, with the password as given (empty: none is kept) and both addresses in front
    //! of those that the user had before.
    static void updateUser(const QString& user, const QString& passwd, const QString& cimUrl,
                           const QString& pdsUrl);

    //! The entry as the object that stands in the file, but with its password as it stands in the entry.
    static QJsonObject toJsonObject(const UserCacheEntry& entry);
};

} // namespace NelvoPlugin
