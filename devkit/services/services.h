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

//! \brief How the services are started.
struct ServicesOptions {
    //! Ports on 127.0.0.1; 0 lets the system choose.
    quint16 signInPort = 0;
    quint16 editorPort = 0;
    quint16 updatePort = 0;
    quint16 packagePort = 0;
    quint16 controlPort = 0;
    //! JSON file with accounts, enterprises and releases; empty for the one that comes with the simulator.
    QString seedFile;
    //! The services speak HTTPS with a certificate of their own. The control path always speaks HTTP.
    bool https = false;
    //! Keeps the answers as well as the requests, for RequestLog::exchanges.
    bool keepsReplies = false;
};

//! \brief The simulated services: sign-in, editor, update and package server, each on its own loopback
//! port, and a control path.
//!
//! Runs on threads of its own; every operation may be called from any thread, those of its parts too. A test
//! starts one, points the plug-in at signInUrl and looks at log() afterwards.
class Services
{
public:
    //! Reads the seed. What is wrong with it is a failure of start.
    explicit Services(const ServicesOptions& options = {});
    ~Services();
    Q_DISABLE_COPY(Services)

    //! Starts listening. On failure returns false and says why in `error`.
    bool start(QString* error = nullptr);
    //! Ends every connection, stalled ones too, and stops listening. The destructor does it as well.
    void stop();

    //! Base addresses with scheme and port, without a trailing slash.
    QString signInUrl() const;
    QString editorUrl() const;
    QString updateUrl() const;
    QString packageUrl() const;
    QString controlUrl() const;
    //! The certificate of an HTTPS server in PEM form; empty without `https`.
    QByteArray certificatePem() const;

    // The parts live as long as this object, and may be used before start and after stop.

    SignInService& signIn() const;
    EditorService& editor() const;
    //! Trees, projects, models, drawings and equipment bindings.
    EditorData& editorData() const;
    UpdateService& updates() const;
    Packages& packages() const;
    //! Requests to the services so far. The control path's own are not among them.
    RequestLog& log() const;
    //! The rules in force. addFault and clearFaults change them.
    const FaultBook& faults() const;

    void addFault(const FaultRule& rule);
    //! Removes all faults, lets stalled requests go on and listens again after Refuse.
    void clearFaults();

    //! Answers `method` `path` with `reply` from now on, whoever asks.
    void setReply(const QByteArray& method, const QString& path, const HttpReply& reply);
    //! The same, byte by byte, for answers that no sound server gives.
    void setRawAnswer(const QByteArray& method, const QString& path, const RawAnswer& answer);
    //! Takes both kinds back. Connections that hold under a raw answer close.
    void clearReplies();

    //! Forgets every session and login ticket, as a restarted server does. Projects and bindings stay.
    void forgetSessions();
    //! Brings organisation trees, projects, models, drawings, bindings and releases back to the seed.
    //! Sessions and packages stay.
    void resetState();

    //! Address of the package of that name, whether there is one or not.
    QString packageUrl(const QString& name) const;
    //! A release with the address, the size and the MD5 of that package, which is read whole for it.
    Release packageRelease(const QString& name, const QString& version, const QString& remarks) const;

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
