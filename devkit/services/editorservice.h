#pragma once

#include "services/service.h"

#include <map>
#include <mutex>

namespace NelvoDevkit {

class EditorData;
class SignInService;
struct SignedInClient;

//! \brief The editor service: heartbeat, units, projects, models and equipment.
//!
//! It identifies a client by the cookie EDITORSESSION, which the heartbeat sets for every client without a
//! valid one. Cookies apply to hosts, not to ports, so a client that has signed in also sends its JSESSIONID:
//! the heartbeat binds the editor session to that account and its enterprise. An account can be signed in at
//! one place only: a later sign-in pushes the account's other editor sessions out.
class EditorService final : public Service
{
public:
    EditorService(const SignInService& signIn, EditorData& data);

    Delivery answer(const HttpRequest& request) override;
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    //! Rejects all current sessions of the account from now on, with HTTP status 401 and `code` as
    //! "infoCode". A client that signs in again gets a new session.
    void pushOut(const QString& user, const QByteArray& code = "1007");

private:
    struct Session {
        QByteArray signIn; //!< the sign-in session that it is bound to; empty if there is none
        QString user;
        qint64 enterpriseId = 0;
        QByteArray pushedOut; //!< the reason of the rejection; empty while the session is valid
    };

    HttpReply heartbeat(const HttpRequest& request);
    HttpReply tree(const HttpRequest& request);
    HttpReply listProjects(const HttpRequest& request);
    HttpReply addProject(const HttpRequest& request);
    HttpReply renameProject(const HttpRequest& request);
    HttpReply listModels(const HttpRequest& request);
    HttpReply listDrawings(const HttpRequest& request);
    HttpReply deleteBindings(const HttpRequest& request);
    HttpReply addBindings(const HttpRequest& request);

    //! The client's session, or null.
    Session* session(const HttpRequest& request);
    //! Starts a session and adds its cookies to the reply.
    Session& startSession(HttpReply& reply);
    void bind(Session& session, const SignedInClient& client);
    void pushOutAll(const QString& user, const QByteArray& code);

    const SignInService& m_signIn;
    EditorData& m_data;
    std::mutex m_mutex;
    std::map<QByteArray, Session> m_sessions;
};

} // namespace NelvoDevkit
