#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <list>

namespace NelvoPlugin {

//! \brief One remembered user of the login window.
struct UserCacheEntry {
    QString user;           //!< as typed
    QString passwd;         //!< clear password, or empty if it is not kept
    QStringList cimUrlList; //!< addresses of sign-in services, most recent first
    QStringList pdsUrlList; //!< PDS addresses, most recent first
};

//! \brief `loginchache.json` beside the executable: the accounts used so far, most recent first.
//!
//! Each operation reads or writes the file directly. If the file cannot be read, the cache is empty; if it
//! cannot be written, it keeps its content. Neither is reported. The file is not locked against other
//! processes. GUI thread.
class CLoginCache
{
public:
    static QString cacheFilePath();

    //! Replaces `users` by the content of the file.
    static void readUsers(std::list<UserCacheEntry>& users);
    //! Replaces the content of the file in place.
    static void writeUsers(const std::list<UserCacheEntry>& users);
    //! Moves the user to the front, sets the password (if empty, no password is stored), and puts both
    //! addresses in front of the user's earlier addresses.
    static void updateUser(const QString& user, const QString& passwd, const QString& cimUrl,
                           const QString& pdsUrl);

    //! The JSON object of the entry as in the file, but with the password as in the entry.
    static QJsonObject toJsonObject(const UserCacheEntry& entry);
};

} // namespace NelvoPlugin
