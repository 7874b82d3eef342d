#pragma once

#include "services/editordata.h"
#include "services/editorservice.h"
#include "services/faults.h"
#include "services/packages.h"
#include "services/rawanswer.h"
#include "services/requestlog.h"
#include "services/signinservice.h"
#include "services/updateservice.h"

namespace NelvoDevkit {

//! \brief The options of the services.
struct ServicesOptions {
    //! Ports on 127.0.0.1; 0 lets the system choose.
    quint16 signInPort = 0;
    quint16 editorPort = 0;
    quint16 updatePort = 0;
    quint16 packagePort = 0;
    quint16 controlPort = 0;
    //! JSON file with accounts, enterprises and releases; empty for the built-in one.
    QString seedFile;
    //! The services use HTTPS with their own certificate. The control path always uses HTTP.
    bool https = false;
    //! Stores the replies as well as the requests, for RequestLog::exchanges.
    bool keepsReplies = false;
};

//! \brief The simulated services: sign-in, editor, update and package server, each on its own loopback port,
//!   and a control path.
//!
//! Has its own threads; every operation, also of its parts, may be called on any thread. A test starts an
//! object, uses signInUrl as the plug-in's address and reads log() afterwards.
class Services
{
public:
    //! Reads the seed. If this fails, start fails.
    explicit Services(const ServicesOptions& options = {});
    ~Services();
    Q_DISABLE_COPY(Services)

    //! Starts listening. On failure returns false and sets `error` to the reason.
    bool start(QString* error = nullptr);
    //! Ends every connection, including stalled ones, and stops listening. The destructor does the same.
    void stop();

    //! Base addresses with scheme and port, without a trailing slash.
    QString signInUrl() const;
    QString editorUrl() const;
    QString updateUrl() const;
    QString packageUrl() const;
    QString controlUrl() const;
    //! The certificate of the HTTPS services in PEM form; empty without `https`.
    QByteArray certificatePem() const;

    // The parts exist as long as this object, and may be used before start and after stop.

    SignInService& signIn() const;
    EditorService& editor() const;
    //! Trees, projects, models, drawings and equipment bindings.
    EditorData& editorData() const;
    UpdateService& updates() const;
    Packages& packages() const;
    //! The requests to the services so far, without those to the control path.
    RequestLog& log() const;
    //! The active rules. addFault and clearFaults change them.
    const FaultBook& faults() const;

    void addFault(const FaultRule& rule);
    //! Removes all faults, continues stalled requests and listens again after Refuse.
    void clearFaults();

    //! Replies to `method` `path` with `reply` from now on.
    void setReply(const QByteArray& method, const QString& path, const HttpReply& reply);
    //! The same with raw bytes, for replies that no correct server sends.
    void setRawAnswer(const QByteArray& method, const QString& path, const RawAnswer& answer);
    //! Removes both kinds of replies. Connections that a raw reply holds open close.
    void clearReplies();

    //! Drops all sessions and login tickets, as a restart of the server does. Projects and bindings remain.
    void forgetSessions();
    //! Restores organisation trees, projects, models, drawings, bindings and releases of the seed. Sessions
    //! and packages remain.
    void resetState();

    //! Address of the package with that name, whether or not it exists.
    QString packageUrl(const QString& name) const;
    //! A release with address, size and MD5 of that package. Reads the whole package.
    Release packageRelease(const QString& name, const QString& version, const QString& remarks) const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
