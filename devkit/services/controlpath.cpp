#include "services/controlpath.h"

#include "services/controlparameters.h"
#include "services/faults.h"
#include "services/service.h"
#include "services/services.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace NelvoDevkit {

namespace {

Fault readFault(const QString& name)
{
    const std::optional<Fault> fault = faultFromName(name);
    if (!fault) {
        throw ParameterError{QStringLiteral("\"%1\" is no fault; parameter \"fault\" is one of %2")
                                 .arg(name, listed(faultNames()))};
    }
    return *fault;
}

QString readPath(const QString& path)
{
    if (!path.isEmpty() && !path.startsWith(QLatin1Char('/')))
        throw ParameterError{QStringLiteral("parameter \"path\" must begin with /")};
    return path;
}

int readValue(Fault fault, const QString& text)
{
    constexpr int hour = 60 * 60 * 1000;
    const QString name = QStringLiteral("value");
    if (fault == Fault::Delay)
        return static_cast<int>(readNumber(name, text, 0, hour, QStringLiteral("the milliseconds to wait,")));
    if (fault == Fault::Status)
        return static_cast<int>(readNumber(name, text, 200, 599, QStringLiteral("an HTTP status")));
    if (!text.isEmpty())
        throw ParameterError{QStringLiteral("parameter \"value\" goes with delay and status only")};
    return 0;
}

FaultRule readRule(const HttpRequest& request)
{
    const Parameters parameters =
        readParameters(request, {QStringLiteral("fault"), QStringLiteral("path"), QStringLiteral("method"),
                                 QStringLiteral("value"), QStringLiteral("once")});
    const Fault fault = readFault(parameters.value(QStringLiteral("fault")));
    return {fault, readPath(parameters.value(QStringLiteral("path"))),
            parameters.value(QStringLiteral("method")).toUpper().toUtf8(),
            readValue(fault, parameters.value(QStringLiteral("value"))),
            readFlag(parameters, QStringLiteral("once"))};
}

QString readUser(const QString& user, const QStringList& users)
{
    if (!users.contains(user)) {
        throw ParameterError{
            QStringLiteral("\"%1\" is no account; parameter \"user\" is one of %2").arg(user, listed(users))};
    }
    return user;
}

QByteArray readInfoCode(const QString& code)
{
    if (code != QLatin1String("1007") && code != QLatin1String("1002"))
        throw ParameterError{QStringLiteral("parameter \"code\" must be 1007 or 1002")};
    return code.toLatin1();
}

int readCount(const Parameters& parameters, const QString& name)
{
    constexpr int most = 1000000;
    const QString text = parameters.value(name, QStringLiteral("0"));
    return static_cast<int>(readNumber(name, text, 0, most, QStringLiteral("a number")));
}

QJsonObject toJson(const FaultRule& rule)
{
    return {{QStringLiteral("fault"), faultName(rule.fault)},
            {QStringLiteral("path"), rule.path},
            {QStringLiteral("method"), QString::fromUtf8(rule.method)},
            {QStringLiteral("value"), rule.value},
            {QStringLiteral("once"), rule.once}};
}

QJsonObject toJson(const LoggedRequest& request)
{
    QJsonArray headers;
    for (const auto& header : request.headers) {
        headers.append(QJsonObject{{QStringLiteral("name"), QString::fromLatin1(header.name)},
                                   {QStringLiteral("value"), QString::fromLatin1(header.value)}});
    }
    return {{QStringLiteral("service"), QString::fromLatin1(request.service)},
            {QStringLiteral("method"), QString::fromLatin1(request.method)},
            {QStringLiteral("target"), QString::fromLatin1(request.target)},
            {QStringLiteral("headers"), headers},
            {QStringLiteral("body"), QString::fromUtf8(request.body)}};
}

template <typename Entry>
HttpReply listReply(const QVector<Entry>& entries)
{
    QJsonArray array;
    for (const Entry& entry : entries)
        array.append(toJson(entry));
    HttpReply reply = jsonReply(QJsonDocument(array));
    reply.body = QJsonDocument(array).toJson(QJsonDocument::Indented);
    return reply;
}

constexpr char HelpText[] = R"(The service simulator

Sign-in service  {{signIn}}
Editor service   {{editor}}
Update service   {{update}}
Package server   {{package}}

GET /                  this text
    curl {{control}}/
GET /requests          the requests to the services so far, as JSON
    curl {{control}}/requests
DELETE /requests       forgets them
    curl -X DELETE {{control}}/requests
POST /faults           adds a fault; the first one that fits a request strikes it
    curl -X POST '{{control}}/faults?fault=status&path=/login&method=GET&value=503&once=1'
    fault   {{faults}}
    path    path that it applies to, without query; left out: every path of all services
    method  HTTP method that it applies to; left out: every method
    value   milliseconds of delay, HTTP status of status
    once    1: strikes the next matching request only
GET /faults            the faults in force, as JSON
    curl {{control}}/faults
DELETE /faults         removes them all; stalled requests go on, refused ports listen again
    curl -X DELETE {{control}}/faults
DELETE /sessions       forgets every session and login ticket; POST /sessions/forget does the same
    curl -X DELETE {{control}}/sessions
POST /push-out         refuses an account's editor sessions from now on, until it signs in again
    curl -X POST '{{control}}/push-out?user=lina&code=1002'
    user    account
    code    1007 or 1002, the infoCode that tells why; left out: 1007
GET /state             projects by enterprise and equipment bindings by project, as JSON
    curl {{control}}/state
DELETE /state          brings trees, projects, models, drawings, bindings and releases back to the
                       seed
    curl -X DELETE {{control}}/state
POST /generate         gives every enterprise a large tree, or many projects or models, in place of its own
    curl -X POST '{{control}}/generate?tree=100000&projects=50000&models=20000'
    tree      nodes of the tree; left out or 0: the tree stays
    projects  number of projects; left out or 0: the projects stay
    models    number of models, and of drawings; left out or 0: the models and drawings stay
GET /releases          the releases in offer by product, as JSON
    curl {{control}}/releases
POST /releases         offers a release as its product's latest one
    curl -X POST '{{control}}/releases?productId=nelvo-editor&version=1.0.2&package=big.zip'
    productId, version, remarks
    package          a package of the package server, which tells path, size and MD5
    path, size, md5  what the release tells in place of that; a path that begins with / is on the package
                     server
GET /packages          the packages and their addresses, as JSON
    curl {{control}}/packages
POST /packages         adds a package, or puts it in place of the one of that name
    curl -X POST '{{control}}/packages?name=big.zip&size=1073741824'
    name    what it is called
    file    the file that it is, or
    size    the number of bytes to make up
POST /packages/delivery  changes how a package is answered; without further parameters: whole, right and
                         at once; answers that stall go on
    curl -X POST '{{control}}/packages/delivery?package=big.zip&end=cut&after=1000000&once=1'
    package          the package
    end              cut, reset or stall, after so many bytes of an answer as "after" tells
    paceBytes        bytes to send every paceMilliseconds; those are 10 if left out
    ignoresRange     1: answers a Range with the whole package and 200
    announced        Content-Length in place of the right one
    once             1: for the next answer only
)";

} // namespace

ControlPath::ControlPath(Services& services) : m_services(services), m_updates(services) {}

HttpReply ControlPath::answer(const HttpRequest& request)
{
    static const std::vector<Route<ControlPath>> routes = {
        {"GET", "/", &ControlPath::help},
        {"GET", "/requests", &ControlPath::listRequests},
        {"DELETE", "/requests", &ControlPath::clearRequests},
        {"GET", "/faults", &ControlPath::listFaults},
        {"POST", "/faults", &ControlPath::addFault},
        {"DELETE", "/faults", &ControlPath::clearFaults},
        {"DELETE", "/sessions", &ControlPath::forgetSessions},
        {"POST", "/sessions/forget", &ControlPath::forgetSessions},
        {"POST", "/push-out", &ControlPath::pushOut},
        {"GET", "/state", &ControlPath::showState},
        {"DELETE", "/state", &ControlPath::resetState},
        {"POST", "/generate", &ControlPath::generate},
    };
    const bool isAboutUpdates =
        request.path().startsWith("/releases") || request.path().startsWith("/packages");
    return isAboutUpdates ? m_updates.answer(request) : dispatch(*this, routes, request);
}

HttpReply ControlPath::help(const HttpRequest& /*request*/)
{
    return textReply(200, QByteArray(HelpText)
                              .replace("{{signIn}}", m_services.signInUrl().toLatin1())
                              .replace("{{editor}}", m_services.editorUrl().toLatin1())
                              .replace("{{update}}", m_services.updateUrl().toLatin1())
                              .replace("{{package}}", m_services.packageUrl().toLatin1())
                              .replace("{{control}}", m_services.controlUrl().toLatin1())
                              .replace("{{faults}}", faultNames().join(QLatin1Char(' ')).toLatin1()));
}

HttpReply ControlPath::listRequests(const HttpRequest& /*request*/)
{
    return listReply(m_services.log().requests());
}

HttpReply ControlPath::clearRequests(const HttpRequest& /*request*/)
{
    m_services.log().clear();
    return textReply(200, "requests forgotten\n");
}

HttpReply ControlPath::listFaults(const HttpRequest& /*request*/)
{
    return listReply(m_services.faults().rules());
}

HttpReply ControlPath::addFault(const HttpRequest& request)
{
    return whenParametersAreRight([&] { m_services.addFault(readRule(request)); }, "fault added\n");
}

HttpReply ControlPath::clearFaults(const HttpRequest& /*request*/)
{
    m_services.clearFaults();
    return textReply(200, "faults removed\n");
}

HttpReply ControlPath::forgetSessions(const HttpRequest& /*request*/)
{
    m_services.forgetSessions();
    return textReply(200, "sessions forgotten\n");
}

HttpReply ControlPath::pushOut(const HttpRequest& request)
{
    const auto pushOut = [&] {
        const QString user = QStringLiteral("user");
        const QString code = QStringLiteral("code");
        const Parameters parameters = readParameters(request, {user, code});
        m_services.editor().pushOut(readUser(parameters.value(user), m_services.signIn().users()),
                                    readInfoCode(parameters.value(code, QStringLiteral("1007"))));
    };
    return whenParametersAreRight(pushOut, "pushed out\n");
}

HttpReply ControlPath::showState(const HttpRequest& /*request*/)
{
    HttpReply reply = jsonReply(QJsonObject());
    reply.body = QJsonDocument(m_services.editorData().state()).toJson(QJsonDocument::Indented);
    return reply;
}

HttpReply ControlPath::resetState(const HttpRequest& /*request*/)
{
    m_services.resetState();
    return textReply(200, "state is as in the seed\n");
}

//! Creates the tree first, because projects and models are spread over its departments.
HttpReply ControlPath::generate(const HttpRequest& request)
{
    const auto generate = [&] {
        const QString tree = QStringLiteral("tree");
        const QString projects = QStringLiteral("projects");
        const QString models = QStringLiteral("models");
        const Parameters parameters = readParameters(request, {tree, projects, models});
        const int treeNodes = readCount(parameters, tree);
        const int projectCount = readCount(parameters, projects);
        const int modelCount = readCount(parameters, models);
        m_services.editorData().generateTree(treeNodes);
        m_services.editorData().generateProjects(projectCount);
        m_services.editorData().generateModels(modelCount);
    };
    return whenParametersAreRight(generate, "generated\n");
}

} // namespace NelvoDevkit
