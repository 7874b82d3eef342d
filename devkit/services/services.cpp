#include "services/services.h"

#include "package/updatepackage.h"
#include "services/bimmodels.h"
#include "services/controlservice.h"
#include "services/editordata.h"
#include "services/editorservice.h"
#include "services/faults.h"
#include "services/httplistener.h"
#include "services/packages.h"
#include "services/packageservice.h"
#include "services/requestlog.h"
#include "services/seed.h"
#include "services/signinservice.h"
#include "services/updateservice.h"

#include <QIODevice>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <array>
#include <map>

namespace NelvoDevkit {

namespace {

//! A service behind its port.
struct Port {
    QByteArray name;
    std::unique_ptr<HttpListener> listener;
    std::unique_ptr<Service> service;

    QString url(const QString& scheme) const
    {
        return QStringLiteral("%1://127.0.0.1:%2").arg(scheme).arg(listener ? listener->port() : 0);
    }
};

HttpReply ofTheOtherKind(HttpReply reply)
{
    reply.status = 200;
    reply.contentType = "application/json;charset=UTF-8";
    reply.body = reply.body.startsWith('[') ? "{}" : "[]";
    return reply;
}

Delivery halved(Delivery delivery)
{
    delivery.manner = Delivery::Manner::HalfBody;
    return delivery;
}

} // namespace

class Services::Private
{
public:
    Private(Services& services, const ServicesOptions& options) : options(options), control(services) {}

    bool makeListeners(QString* error);
    bool bind(QString* error) const;
    bool listen(QString* error);
    void makeServices(const Seed& seed);
    void makeUpdateServices(const Seed& seed);
    Release completed(Release release) const;
    Delivery handle(Port& port, const HttpRequest& request);
    std::optional<FaultBook::Strike> strike(const Port& port, const HttpRequest& request);
    Delivery underFault(Port& port, const HttpRequest& request, const FaultBook::Strike& strike);
    Delivery answer(const Port& port, const HttpRequest& request) const;
    void refuseEverything() const;

    QString url(const Port& port) const
    {
        return port.url(options.https ? QStringLiteral("https") : QStringLiteral("http"));
    }

    const ServicesOptions options;
    RequestLog log;
    FaultBook faults;
    //! Keeps a Refuse that strikes and the removal of all faults from crossing each other.
    std::mutex refusal;

    mutable std::mutex repliesMutex;
    std::map<std::pair<QByteArray, QByteArray>, CannedReply> replies; // by method and path

    ControlService control;
    QByteArray certificatePem;
    QStringList users;
    std::unique_ptr<EditorData> editorData;
    Packages packages;
    EditorService* editorService = nullptr; // owned by its port
    UpdateService* updateService = nullptr; // likewise
    Port signIn{"sign-in", nullptr, nullptr};
    Port editor{"editor", nullptr, nullptr};
    Port update{"update", nullptr, nullptr};
    Port package{"package", nullptr, nullptr};
    const std::array<Port*, 4> ports{&signIn, &editor, &update, &package};
    std::unique_ptr<HttpListener> controlListener;
};

bool Services::Private::makeListeners(QString* error)
{
    std::optional<Certificate> certificate;
    if (options.https) {
        certificate = makeCertificate();
        if (!certificate) {
            *error = QStringLiteral("can't make a certificate");
            return false;
        }
        certificatePem = certificate->certificatePem;
    }
    for (Port* port : ports)
        port->listener = std::make_unique<HttpListener>(certificate);
    controlListener = std::make_unique<HttpListener>();
    return true;
}

bool Services::Private::bind(QString* error) const
{
    return signIn.listener->bind(options.signInPort, error) &&
           editor.listener->bind(options.editorPort, error) &&
           update.listener->bind(options.updatePort, error) &&
           package.listener->bind(options.packagePort, error) &&
           controlListener->bind(options.controlPort, error);
}

bool Services::Private::listen(QString* error)
{
    const auto listens = [this, error](Port* port) {
        return port->listener->listen(
            [this, port](const HttpRequest& request) { return handle(*port, request); }, error);
    };
    return std::all_of(ports.begin(), ports.end(), listens) &&
           controlListener->listen(
               [this](const HttpRequest& request) { return Delivery{control.answer(request)}; }, error);
}

void Services::Private::makeServices(const Seed& seed)
{
    users.clear();
    for (const Account& account : seed.accounts)
        users.append(account.user);
    auto signInService = std::make_unique<SignInService>(seed, url(signIn), url(editor));
    auto data = std::make_unique<EditorData>(seed);
    auto service = std::make_unique<EditorService>(*signInService, *data);
    editorService = service.get();
    editor.service = std::move(service);
    editorData = std::move(data);
    signIn.service = std::move(signInService);
    makeUpdateServices(seed);
}

void Services::Private::makeUpdateServices(const Seed& seed)
{
    for (auto entry = seed.packages.begin(); entry != seed.packages.end(); ++entry)
        packages.add(entry.key(), entry.value());
    package.service = std::make_unique<PackageService>(packages);
    QMap<QString, Release> releases = seed.releases;
    for (Release& release : releases)
        release = completed(release);
    auto service = std::make_unique<UpdateService>(seed.updateToken, releases);
    updateService = service.get();
    update.service = std::move(service);
}

Release Services::Private::completed(Release release) const
{
    if (release.path.startsWith(QLatin1Char('/')))
        release.path.prepend(url(package));
    return release;
}

Delivery Services::Private::handle(Port& port, const HttpRequest& request)
{
    HttpRequest logged = request;
    logged.service = port.name;
    log.append(logged);
    const std::optional<FaultBook::Strike> fault = strike(port, request);
    Delivery delivery = fault ? underFault(port, request, *fault) : answer(port, request);
    if (options.keepsReplies)
        log.append(Exchange{logged, delivery.reply});
    return delivery;
}

std::optional<FaultBook::Strike> Services::Private::strike(const Port& port, const HttpRequest& request)
{
    const std::lock_guard lock(refusal);
    std::optional<FaultBook::Strike> strike = faults.strike(request);
    if (strike && strike->rule.fault == Fault::Refuse)
        port.listener->refuse();
    return strike;
}

Delivery Services::Private::underFault(Port& port, const HttpRequest& request,
                                       const FaultBook::Strike& strike)
{
    switch (strike.rule.fault) {
    case Fault::Refuse:
        return {{}, Delivery::Manner::Drop};
    case Fault::Reset:
        return {{}, Delivery::Manner::Reset};
    case Fault::Stall:
    case Fault::Delay:
        faults.hold(strike);
        return answer(port, request);
    case Fault::CutBody:
        return halved(answer(port, request));
    case Fault::Status:
        return {textReply(strike.rule.value, "simulated fault\n")};
    case Fault::NotJson:
        return {htmlReply("<html><body>simulated fault: this is no JSON</body></html>\n")};
    case Fault::WrongJson:
        return {ofTheOtherKind(answer(port, request).reply)};
    case Fault::Redirect:
        return {redirectReply(markedTarget(request))};
    case Fault::EndlessRedirect:
        return {redirectReply(request.target)};
    case Fault::LoseSession:
        port.service->forgetSession(request);
        return answer(port, request);
    }
    return {};
}

Delivery Services::Private::answer(const Port& port, const HttpRequest& request) const
{
    {
        const std::lock_guard lock(repliesMutex);
        const auto canned = replies.find({request.method, request.path()});
        if (canned != replies.end())
            return {canned->second};
    }
    return port.service->answer(request);
}

void Services::Private::refuseEverything() const
{
    for (const Port* port : ports)
        port->listener->refuse();
}

Services::Services(const ServicesOptions& options) : d(std::make_unique<Private>(*this, options)) {}

Services::~Services()
{
    stop();
}

bool Services::start(QString* error)
{
    QString reason;
    const std::optional<Seed> seed = loadSeed(d->options.seedFile, &reason);
    bool ok = seed && d->makeListeners(&reason) && d->bind(&reason);
    if (ok) {
        d->makeServices(*seed);
        ok = d->listen(&reason);
    }
    if (!ok) {
        stop();
        if (error != nullptr)
            *error = reason;
        return false;
    }
    const QVector<FaultRule> rules = d->faults.rules();
    if (std::any_of(rules.begin(), rules.end(), refusesEverything))
        d->refuseEverything();
    return true;
}

//! The control path goes first, so that it adds no fault under which a request would wait again; the
//! connections are cut before the waiting requests wake up, so that no answer of theirs goes out.
void Services::stop()
{
    if (!d->signIn.listener)
        return;
    d->controlListener->close();
    d->controlListener->join();
    for (const Port* port : d->ports)
        port->listener->close();
    d->faults.clear();
    for (const Port* port : d->ports)
        port->listener->join();
}

QString Services::signInUrl() const
{
    return d->url(d->signIn);
}

QString Services::editorUrl() const
{
    return d->url(d->editor);
}

QString Services::updateUrl() const
{
    return d->url(d->update);
}

QString Services::packageUrl() const
{
    return d->url(d->package);
}

QString Services::controlUrl() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(d->controlListener ? d->controlListener->port() : 0);
}

QByteArray Services::certificatePem() const
{
    return d->certificatePem;
}

void Services::addFault(const FaultRule& rule)
{
    const std::lock_guard lock(d->refusal);
    d->faults.add(rule);
    if (refusesEverything(rule) && d->signIn.listener)
        d->refuseEverything();
}

void Services::clearFaults()
{
    const std::lock_guard lock(d->refusal);
    d->faults.clear();
    if (d->signIn.listener) {
        for (const Port* port : d->ports)
            port->listener->resume();
    }
}

QVector<FaultRule> Services::faults() const
{
    return d->faults.rules();
}

void Services::setReply(const QByteArray& method, const QString& path, const CannedReply& reply)
{
    const std::lock_guard lock(d->repliesMutex);
    d->replies[{method, path.toUtf8()}] = reply;
}

void Services::clearReplies()
{
    const std::lock_guard lock(d->repliesMutex);
    d->replies.clear();
}

QVector<LoggedRequest> Services::requests() const
{
    return d->log.requests();
}

QVector<Exchange> Services::exchanges() const
{
    return d->log.exchanges();
}

void Services::clearRequests()
{
    d->log.clear();
}

void Services::forgetSessions()
{
    for (const Port* port : d->ports) {
        if (port->service)
            port->service->forgetSessions();
    }
}

QStringList Services::users() const
{
    return d->users;
}

void Services::pushOut(const QString& user, const QByteArray& code)
{
    if (d->editorService != nullptr)
        d->editorService->pushOut(user, code);
}

QVector<SceneProject> Services::sceneProjects(qint64 enterpriseId) const
{
    return d->editorData ? d->editorData->projects(enterpriseId) : QVector<SceneProject>();
}

EquipmentBindings Services::equipmentBindings(const QString& sceneProjId) const
{
    return d->editorData ? d->editorData->bindings(sceneProjId) : EquipmentBindings();
}

QVector<BimModel> Services::bimModels(qint64 enterpriseId) const
{
    return d->editorData ? d->editorData->models(enterpriseId).models : QVector<BimModel>();
}

QVector<BimModel> Services::bimDrawings(qint64 enterpriseId) const
{
    return d->editorData ? d->editorData->models(enterpriseId).drawings : QVector<BimModel>();
}

QJsonObject Services::state() const
{
    return d->editorData ? d->editorData->state() : QJsonObject();
}

void Services::generateTree(int nodes)
{
    if (d->editorData && nodes > 0)
        d->editorData->generateTree(nodes);
}

void Services::generateProjects(int count)
{
    if (d->editorData && count > 0)
        d->editorData->generateProjects(count);
}

void Services::generateModels(int count)
{
    if (d->editorData && count > 0)
        d->editorData->generateModels(count);
}

void Services::resetState()
{
    if (d->editorData)
        d->editorData->reset();
    if (d->updateService != nullptr)
        d->updateService->reset();
}

QString Services::updateToken() const
{
    return d->updateService != nullptr ? d->updateService->token() : QString();
}

void Services::setRelease(const QString& productId, const Release& release)
{
    if (d->updateService != nullptr)
        d->updateService->setRelease(productId, d->completed(release));
}

QMap<QString, Release> Services::releases() const
{
    return d->updateService != nullptr ? d->updateService->releases() : QMap<QString, Release>();
}

void Services::addPackage(const QString& name, const QByteArray& content)
{
    d->packages.add(name, content);
}

void Services::addPackageFile(const QString& name, const QString& fileName)
{
    d->packages.addFile(name, fileName);
}

void Services::addGeneratedPackage(const QString& name, qint64 size)
{
    d->packages.addGenerated(name, size);
}

QStringList Services::packages() const
{
    return d->packages.names();
}

QString Services::packageUrl(const QString& name) const
{
    return packageUrl() + packagePath(name);
}

Release Services::packageRelease(const QString& name, const QString& version, const QString& remarks) const
{
    const std::unique_ptr<QIODevice> package = d->packages.open(name);
    return {version, remarks, package ? md5Of(*package) : QString(), package ? package->size() : 0,
            packageUrl(name)};
}

QByteArray Services::packageBytes(const QString& name, qint64 offset, int size) const
{
    const std::unique_ptr<QIODevice> package = d->packages.open(name);
    return package && package->seek(offset) ? package->read(size) : QByteArray();
}

void Services::setPackageDelivery(const QString& name, const PackageDelivery& delivery)
{
    d->packages.setDelivery(name, delivery);
}

} // namespace NelvoDevkit
