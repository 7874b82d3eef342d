#pragma once

#include "services/seed.h"
#include "services/service.h"

#include <map>
#include <mutex>
#include <optional>
#include <set>

class QJsonObject;
class QUrlQuery;

namespace NelvoDevkit {

//! \brief A client that has signed in.
struct SignedInClient {
    QByteArray session; //!< session id; a new one after each sign-in
    QString user;
    std::optional<qint64> enterpriseId; //!< set when the session is bound to an enterprise
};

//! \brief The sign-in service: a form with one-time tickets, and the requests of signed-in clients.
//!
//! It identifies a client by its cookie JSESSIONID. It redirects a request below /rs/ to the form if the
//! client has not signed in.
class SignInService final : public Service
{
public:
    explicit SignInService(const Seed& seed);

    //! Sets the base addresses, without a trailing slash, of this service and of the editor service. Call it
    //! before the first request.
    void setAddresses(const QString& ownUrl, const QString& editorUrl);

    Delivery answer(const HttpRequest& request) override;
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    //! Names of the accounts.
    QStringList users() const;
    //! The client that sent the request, to this or another service, if it has signed in.
    std::optional<SignedInClient> signedInClient(const HttpRequest& request) const;

private:
    struct Session {
        const Account* account = nullptr; //!< null until the client signs in
        QByteArray clientToken;           //!< empty until the client is bound to an enterprise
        std::optional<qint64> enterpriseId;
    };

    HttpReply showForm(const HttpRequest& request);
    HttpReply takeForm(const HttpRequest& request);
    HttpReply showSuccess(const HttpRequest& request);
    HttpReply listCompanies(const HttpRequest& request);
    HttpReply bindToEnterprise(const HttpRequest& request);
    HttpReply listServers(const HttpRequest& request);
    HttpReply clientToken(const HttpRequest& request);
    HttpReply logOut(const HttpRequest& request);

    HttpReply form(const QString& message = {});
    HttpReply signIn(const HttpRequest& request, const Account& account);
    HttpReply sendToForm(const HttpRequest& request) const;
    //! The client's session, or null.
    Session* session(const HttpRequest& request);
    bool isSignedIn(const HttpRequest& request);
    //! Starts a session and adds its cookie to the reply.
    Session& startSession(HttpReply& reply);
    //! The account with the user name and password of the form's fields, or null.
    const Account* authenticate(const QUrlQuery& fields) const;

    const Seed m_seed;
    QString m_ownUrl;
    QString m_editorUrl;

    mutable std::mutex m_mutex;
    std::map<QByteArray, Session> m_sessions;
    std::set<QByteArray> m_loginTickets; // issued and not used yet
    int m_ticketCount = 0;
};

} // namespace NelvoDevkit
