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
    QByteArray session; //!< its id, another one after each sign-in
    QString user;
    std::optional<qint64> enterpriseId; //!< once the session is bound to one
};

//! \brief The sign-in service: a login form with one-time tickets, and what a signed-in client may ask.
//!
//! A client is known by its JSESSIONID cookie. Whoever asks for anything under /rs/ without being signed
//! in is sent to the form.
class SignInService final : public Service
{
public:
    explicit SignInService(const Seed& seed);

    //! The base addresses, without a trailing slash, of this service and of the editor service. They must be
    //! set before the first request.
    void setAddresses(const QString& ownUrl, const QString& editorUrl);

    Delivery answer(const HttpRequest& request) override;
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    //! Names of the accounts.
    QStringList users() const;
    //! The client that sent the request, to this or to another service, if it is signed in.
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
    //! Starts a session and hands its cookie out with the reply.
    Session& startSession(HttpReply& reply);
    //! The account that the form's fields name with its right password, or null.
    const Account* authenticate(const QUrlQuery& fields) const;

    const Seed m_seed;
    QString m_ownUrl;
    QString m_editorUrl;

    mutable std::mutex m_mutex;
    std::map<QByteArray, Session> m_sessions;
    std::set<QByteArray> m_loginTickets; // handed out and not yet used
    int m_ticketCount = 0;
};

} // namespace NelvoDevkit
