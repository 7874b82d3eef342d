#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

class QJsonObject;
class QStringList;

namespace NelvoDevkit {

//! \brief What a service does wrong.
enum class Fault {
    Refuse,          //!< drops the connection unanswered and stops listening, until clearFaults
    Reset,           //!< reads the request and resets the connection
    Stall,           //!< reads the request and never answers, until clearFaults; then answers normally
    Delay,           //!< answers normally after FaultRule::value milliseconds
    CutBody,         //!< announces the whole body, sends half of it and closes
    Status,          //!< answers with the HTTP status FaultRule::value and a short text
    NotJson,         //!< answers 200 with a body that is no JSON
    WrongJson,       //!< answers 200 with JSON of the other kind: an object for an array, and vice versa
    Redirect,        //!< redirects once to the same path, which then answers normally
    EndlessRedirect, //!< redirects to itself for ever
    LoseSession,     //!< forgets the client's session before it handles the request
};

//! \brief A fault and where it strikes.
struct FaultRule {
    Fault fault = Fault::Status;
    //! Path it applies to, without query, such as "/login"; empty for every path of every service.
    QString path;
    //! HTTP method it applies to; empty for every method.
    QByteArray method;
    //! Milliseconds of Delay, status of Status; unused otherwise.
    int value = 0;
    //! Strikes the next matching request only.
    bool once = false;
};

//! \brief A request as it came in.
struct LoggedRequest {
    struct Header {
        QByteArray name; //!< in the spelling received
        QByteArray value;
    };

    QByteArray service; //!< "sign-in", "editor", "update" or "package"
    QByteArray method;
    QByteArray target;       //!< path and query, undecoded
    QVector<Header> headers; //!< in the order received
    QByteArray body;

    //! Path of the target, without query.
    QByteArray path() const;
    //! Value of the first header of that name (any case), or a null array.
    QByteArray header(const QByteArray& name) const;
};

//! \brief A fixed answer in place of a service's own.
struct CannedReply {
    int status = 200;
    QByteArray contentType = "text/plain; charset=utf-8";
    QByteArray body;
    QVector<LoggedRequest::Header> headers; //!< further headers, such as Set-Cookie
};

//! \brief A request and what the service answered.
struct Exchange {
    LoggedRequest request;
    CannedReply reply; //!< without the body where that is made while it goes out, as a package's
};

//! \brief A scene project as the editor service keeps it.
struct SceneProject {
    QString id;
    QString name;
    QString deptId;
    QString deptName;
    QString code;
    QString basemap; //!< empty for a project that has none
    QString proj4;
    double x = 0;
    double y = 0;
};

//! \brief A building model, or a drawing, that the editor service relates to the scene projects.
struct BimModel {
    QString guid;
    QString name;
    QString deptId;
    qint64 ppid = 0;
    qint64 profession = 0; //!< a number from 1 to 12; any other is of no known kind
    qint64 size = 0;
};

//! \brief What was done to the equipment bindings of a scene project.
struct EquipmentBindings {
    int deletes = 0;  //!< calls that deleted them all
    int batches = 0;  //!< calls that added some
    int elements = 0; //!< those there are now: added since the last delete
};

//! \brief A release of a product, as the update service offers it.
struct Release {
    QString version;
    QString remarks;
    QString md5;
    qint64 size = 0;
    QString path; //!< URL of the package; one that begins with / lies on the package server
};

//! \brief How the package server answers for a package. As it stands here: whole, right and at once.
struct PackageDelivery {
    enum class End {
        Whole, //!< with the last byte
        Cut,   //!< the connection ends after `endAfter` bytes
        Reset, //!< it is reset after that many; the client gets no more of them, but may get less
        Stall, //!< nothing follows them until setPackageDelivery is called for the package again
    };

    End end = End::Whole;
    qint64 endAfter = 0;  //!< bytes of the answer's body, of which a Range leaves less than of the file
    qint64 paceBytes = 0; //!< sends so many bytes every paceMilliseconds; 0: as fast as it goes
    int paceMilliseconds = 10;
    bool ignoresRange = false;           //!< answers a Range with 200 and the whole package
    std::optional<qint64> announcedSize; //!< Content-Length in place of the right one
    bool once = false; //!< for the next answer only; those after it are whole, right and at once
};

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
    //! The services speak HTTPS with a certificate made at start. The control path always speaks HTTP.
    bool https = false;
    //! Keeps the answers as well as the requests, for Services::exchanges.
    bool keepsReplies = false;
};

//! \brief The simulated services: sign-in, editor, update and package server, each on its own loopback
//! port, and a control path.
//!
//! Runs on threads of its own; every operation may be called from any thread. A test starts one, points
//! the plug-in at signInUrl and looks at requests afterwards.
class Services
{
public:
    explicit Services(const ServicesOptions& options = {});
    ~Services();
    Q_DISABLE_COPY(Services)

    //! Starts listening. On failure returns false and tells why in `error`.
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

    void addFault(const FaultRule& rule);
    //! Removes all faults, lets stalled requests go on and listens again after Refuse.
    void clearFaults();
    //! The rules in force, in the order in which they are matched.
    QVector<FaultRule> faults() const;

    //! Answers `method` `path` with `reply` from now on, whoever asks.
    void setReply(const QByteArray& method, const QString& path, const CannedReply& reply);
    void clearReplies();

    //! Requests to the services so far, in the order in which they were read. The control path's own
    //! are not among them.
    QVector<LoggedRequest> requests() const;
    //! The same with their answers, in the order in which these were made; none without
    //! ServicesOptions::keepsReplies. What a fault does to the connection doesn't show.
    QVector<Exchange> exchanges() const;
    //! Forgets requests and answers so far.
    void clearRequests();

    //! Forgets every session and login ticket, as a restarted server does. Projects and bindings stay.
    void forgetSessions();

    //! Names of the accounts.
    QStringList users() const;
    //! From now on the editor service refuses all present sessions of that account, with HTTP status 401
    //! and `code` as "infoCode". A client that signs in anew gets a new session.
    void pushOut(const QString& user, const QByteArray& code = "1007");

    //! The projects of the enterprise, in the order in which the editor service lists them.
    QVector<SceneProject> sceneProjects(qint64 enterpriseId) const;
    EquipmentBindings equipmentBindings(const QString& sceneProjId) const;
    //! The enterprise's models and its drawings, in the order in which the editor service lists them.
    QVector<BimModel> bimModels(qint64 enterpriseId) const;
    QVector<BimModel> bimDrawings(qint64 enterpriseId) const;
    //! All projects by enterprise and all equipment bindings by project.
    QJsonObject state() const;
    //! Replaces the organisation tree of every enterprise by one of that many nodes, up to ten below each,
    //! the same one every time. Projects stay as they are. Zero changes nothing.
    void generateTree(int nodes);
    //! Replaces the projects of every enterprise by that many, spread over the departments of its tree.
    //! Zero changes nothing.
    void generateProjects(int count);
    //! Replaces the models of every enterprise and its drawings by that many of each, spread over the
    //! departments of its tree. Zero changes nothing.
    void generateModels(int count);
    //! Brings organisation trees, projects, models, drawings, bindings and releases back to the seed.
    //! Sessions and packages stay.
    void resetState();

    //! The access token with which one may ask for releases.
    QString updateToken() const;
    //! From now on this is the product's latest release.
    void setRelease(const QString& productId, const Release& release);
    //! The releases in offer by product, with whole URLs.
    QMap<QString, Release> releases() const;

    //! Adds a package to the package server, in place of one of that name: from memory, from a file, which
    //! is read anew for each request, or of that many bytes that are made up as they go out, the same
    //! ones every time. Packages may be added before start.
    void addPackage(const QString& name, const QByteArray& content);
    void addPackageFile(const QString& name, const QString& fileName);
    void addGeneratedPackage(const QString& name, qint64 size);
    //! The names of the packages.
    QStringList packages() const;
    //! Address of the package of that name, whether there is one or not.
    QString packageUrl(const QString& name) const;
    //! A release with the address, the size and the MD5 of that package, which is read whole for it.
    Release packageRelease(const QString& name, const QString& version, const QString& remarks) const;
    //! Up to `size` bytes of the package from `offset` on; less where it ends.
    QByteArray packageBytes(const QString& name, qint64 offset, int size) const;
    //! How that package is answered from now on; answers that stall for it go on.
    void setPackageDelivery(const QString& name, const PackageDelivery& delivery);

private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace NelvoDevkit
