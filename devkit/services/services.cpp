#include "services/services.h"

#include "package/updatepackage.h"
#include "services/controlpath.h"
#include "services/httplistener.h"
#include "services/packageservice.h"

#include <QIODevice>

#include <algorithm>
#include <array>
#include <map>

namespace NelvoDevkit {

namespace {

//! A service with its port.
struct Port {
    QByteArray name;
    Service& service;
    quint16 number; //!< as requested; 0 lets the system choose
    HttpListener listener;
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
    Private(Services& services, const ServicesOptions& options);

    bool bind(QString* error);
    bool listen(QString* error);
    Delivery handle(Port& port, const HttpRequest& request);
    std::optional<FaultBook::Strike> strike(Port& port, const HttpRequest& request);
    Delivery underFault(Port& port, const HttpRequest& request, const FaultBook::Strike& strike);
    Delivery answer(const Port& port, const HttpRequest& request) const;
    void refuseEverything();

    QString url(const Port& port) const
    {
        return QStringLiteral("%1://127.0.0.1:%2")
            .arg(options.https ? QStringLiteral("https") : QStringLiteral("http"))
            .arg(port.listener.port());
    }

    const ServicesOptions options;
    QString error; //!< why start fails, if it is known already
    const Seed seed{loadSeed(options.seedFile, &error).value_or(Seed())};
    const std::optional<Certificate> certificate{options.https ? makeCertificate() : std::nullopt};

    RequestLog log;
    FaultBook faults;
    //! Prevents a Refuse and the removal of all faults from running at the same time.
    std::mutex refusal;

    mutable std::mutex answersMutex;
    std::map<std::pair<QByteArray, QByteArray>, std::function<Delivery()>> fixedAnswers; // by method and path

    SignInService signInService{seed};
    EditorData editorData{seed};
    EditorService editorService{signInService, editorData};
    UpdateService updateService{seed};
    Packages packages;
    PackageService packageService{packages};
    ControlPath controlPath;

    Port signIn{"sign-in", signInService, options.signInPort, HttpListener(certificate)};
    Port editor{"editor", editorService, options.editorPort, HttpListener(certificate)};
    Port update{"update", updateService, options.updatePort, HttpListener(certificate)};
    Port package{"package", packageService, options.packagePort, HttpListener(certificate)};
    const std::array<Port*, 4> ports{&signIn, &editor, &update, &package};
    HttpListener controlListener;
};

Services::Private::Private(Services& services, const ServicesOptions& options)
    : options(options), controlPath(services)
{
    for (auto entry = seed.packages.begin(); entry != seed.packages.end(); ++entry)
        packages.add(entry.key(), entry.value());
    if (error.isEmpty() && options.https && !certificate)
        error = QStringLiteral("can't make a certificate");
}

//! Binds the ports and sets the addresses that the services' replies contain.
bool Services::Private::bind(QString* error)
{
    const auto binds = [error](Port* port) { return port->listener.bind(port->number, error); };
    if (!std::all_of(ports.begin(), ports.end(), binds) || !controlListener.bind(options.controlPort, error))
        return false;
    signInService.setAddresses(url(signIn), url(editor));
    updateService.setPackageUrl(url(package));
    return true;
}

bool Services::Private::listen(QString* error)
{
    const auto listens = [this, error](Port* port) {
        return port->listener.listen(
            [this, port](const HttpRequest& request) { return handle(*port, request); }, error);
    };
    return std::all_of(ports.begin(), ports.end(), listens) &&
           controlListener.listen(
               [this](const HttpRequest& request) { return Delivery{controlPath.answer(request)}; }, error);
}

Delivery Services::Private::handle(Port& port, const HttpRequest& request)
{
    const LoggedRequest logged{request, port.name};
    log.append(logged);
    const std::optional<FaultBook::Strike> fault = strike(port, request);
    Delivery delivery = fault ? underFault(port, request, *fault) : answer(port, request);
    if (options.keepsReplies)
        log.append(Exchange{logged, delivery.reply});
    return delivery;
}

std::optional<FaultBook::Strike> Services::Private::strike(Port& port, const HttpRequest& request)
{
    const std::lock_guard lock(refusal);
    std::optional<FaultBook::Strike> strike = faults.strike(request);
    if (strike && strike->rule.fault == Fault::Refuse)
        port.listener.refuse();
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
        port.service.forgetSession(request);
        return answer(port, request);
    }
    return {};
}

Delivery Services::Private::answer(const Port& port, const HttpRequest& request) const
{
    {
        const std::lock_guard lock(answersMutex);
        const auto fixed = fixedAnswers.find({request.method, request.path()});
        if (fixed != fixedAnswers.end())
            return fixed->second();
    }
    return port.service.answer(request);
}

void Services::Private::refuseEverything()
{
    for (Port* port : ports)
        port->listener.refuse();
}

Services::Services(const ServicesOptions& options) : d(std::make_unique<Private>(*this, options)) {}

Services::~Services()
{
    stop();
}

bool Services::start(QString* error)
{
    QString reason = d->error;
    if (!reason.isEmpty() || !d->bind(&reason) || !d->listen(&reason)) {
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

//! Stops the control path first, so that it adds no fault that would make a request wait again. Ends the
//! connections before the waiting requests continue, so that none of them is replied to.
void Services::stop()
{
    d->controlListener.close();
    d->controlListener.join();
    for (Port* port : d->ports)
        port->listener.close();
    d->faults.clear();
    for (Port* port : d->ports)
        port->listener.join();
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
    return QStringLiteral("http://127.0.0.1:%1").arg(d->controlListener.port());
}

QByteArray Services::certificatePem() const
{
    return d->certificate ? d->certificate->certificatePem : QByteArray();
}

SignInService& Services::signIn() const
{
    return d->signInService;
}

EditorService& Services::editor() const
{
    return d->editorService;
}

EditorData& Services::editorData() const
{
    return d->editorData;
}

UpdateService& Services::updates() const
{
    return d->updateService;
}

Packages& Services::packages() const
{
    return d->packages;
}

RequestLog& Services::log() const
{
    return d->log;
}

const FaultBook& Services::faults() const
{
    return d->faults;
}

void Services::addFault(const FaultRule& rule)
{
    const std::lock_guard lock(d->refusal);
    d->faults.add(rule);
    if (refusesEverything(rule))
        d->refuseEverything();
}

void Services::clearFaults()
{
    const std::lock_guard lock(d->refusal);
    d->faults.clear();
    for (Port* port : d->ports)
        port->listener.resume();
}

void Services::setReply(const QByteArray& method, const QString& path, const HttpReply& reply)
{
    const std::lock_guard lock(d->answersMutex);
    d->fixedAnswers.insert_or_assign({method, path.toUtf8()}, [reply] { return Delivery{reply}; });
}

void Services::setRawAnswer(const QByteArray& method, const QString& path, const RawAnswer& answer)
{
    const std::lock_guard lock(d->answersMutex);
    d->fixedAnswers.insert_or_assign({method, path.toUtf8()}, [owned = std::make_shared<const RawAnswer>(
                                                                   answer)] { return rawDelivery(owned); });
}

void Services::clearReplies()
{
    const std::lock_guard lock(d->answersMutex);
    d->fixedAnswers.clear();
}

void Services::forgetSessions()
{
    for (Port* port : d->ports)
        port->service.forgetSessions();
}

void Services::resetState()
{
    d->editorData.reset();
    d->updateService.reset();
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

} // namespace NelvoDevkit
