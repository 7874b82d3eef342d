#include "tests/wire/operations.h"

#include "services/services.h"
#include "services/signinpages.h"
#include "tests/bim/pdsstandins.h"
#include "tests/e2e/pluginhost.h"
#include "tests/e2e/updatepages.h"
#include "tests/support/files.h"
#include "web/downloader.h"

#include <NelvoSDK/IPdsMgr.h>
#include <NelvoSDK/IProjectInfoMgr.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimerEvent>

#include <algorithm>

namespace Wire {

namespace {

using E2e::PluginHost;
using NelvoDevkit::Services;

const auto User = QStringLiteral("zhangwei");

//! \brief An operation whose start returns when it has ended.
class BlockingOperation : public Operation
{
public:
    BlockingOperation(Services& services, PluginHost& host) : m_services(services), m_host(host) {}

    void start() final { m_outcome = succeeds() ? Outcome::Used : Outcome::Failed; }
    std::optional<Outcome> outcome() const final { return m_outcome; }

protected:
    virtual bool succeeds() = 0;

    Services& services() { return m_services; }
    PluginHost& host() { return m_host; }

private:
    Services& m_services;
    PluginHost& m_host;
    std::optional<Outcome> m_outcome;
};

class ReadFormPage final : public BlockingOperation
{
public:
    using BlockingOperation::BlockingOperation;

private:
    //! The page's text is sent to the service.
    bool succeeds() override
    {
        services().forgetSessions();
        host().signIn(services().signInUrl(), User);
        const QVector<NelvoDevkit::LoggedRequest> requests = services().log().requests();
        return std::any_of(requests.begin(), requests.end(), [](const NelvoDevkit::LoggedRequest& request) {
            return request.method == "POST" && request.path() == "/login";
        });
    }
};

class ReadEnterprises final : public BlockingOperation
{
public:
    using BlockingOperation::BlockingOperation;

private:
    bool succeeds() override
    {
        services().forgetSessions();
        QString message;
        const NelvoSDK::LoginSession session = host().signIn(services().signInUrl(), User, &message);
        return message.isEmpty() && session.loggedIn;
    }
};

class ReadProjects final : public BlockingOperation
{
public:
    using BlockingOperation::BlockingOperation;

private:
    bool succeeds() override
    {
        std::list<NelvoSDK::ProjectNode> projects;
        return E2e::plugin()->GetProjectInfoMgr()->GetServerProjectTree(projects) && projects.size() == 1 &&
               projects.front().name == L"桥";
    }
};

class WatchSession final : public BlockingOperation
{
public:
    using BlockingOperation::BlockingOperation;

private:
    //! A push-out reaches the host.
    bool succeeds() override
    {
        TestSupport::MessageRecorder observer;
        NelvoSDK::IMessageMgr* const messages = E2e::plugin()->GetMessageMgr();
        messages->Attach(&observer);
        QTimerEvent tick(0);
        QCoreApplication::sendEvent(dynamic_cast<QObject*>(E2e::plugin()->GetProjectInfoMgr()), &tick);
        // A shutdown during the request also ends the message manager.
        if (E2e::plugin()->GetMessageMgr())
            messages->Detach(&observer);
        return !observer.heard.isEmpty();
    }
};

class CheckForUpdate final : public BlockingOperation
{
public:
    using BlockingOperation::BlockingOperation;

private:
    bool succeeds() override
    {
        const QSignalSpy answers(E2e::updater(), SIGNAL(needUpdate(bool)));
        E2e::checkVersion(services().updateUrl(), QStringLiteral("token"), QStringLiteral("product"));
        return answers == QList<QVariantList>{{true}};
    }
};

//! \brief The list is fetched on the worker thread.
class ReadModels final : public Operation
{
public:
    ReadModels(Services& /*services*/, PluginHost& /*host*/) { models()->Attach(&m_observer); }
    ~ReadModels() override
    {
        if (models())
            models()->Detach(&m_observer);
    }

    void start() override { models()->InitBimData(); }
    std::optional<Outcome> outcome() const override
    {
        if (!m_observer.calls.contains(QStringLiteral("synced")))
            return std::nullopt;
        const auto* const lists = dynamic_cast<const QObject*>(models());
        return lists->property("bimProjList").toJsonArray().isEmpty() ? Outcome::Failed : Outcome::Used;
    }

private:
    static NelvoSDK::IPdsMgr* models() { return E2e::plugin()->GetPdsMgr(); }

    PdsObserver m_observer;
};

const auto Package = QStringLiteral("package.zip");
const QByteArray PackageBytes = QByteArray("package").repeated(1000);

//! \brief The transfer of a package. The updater checks its MD5 before it installs it.
class Download final : public Operation
{
public:
    Download(Services& services, PluginHost& /*host*/) : m_url(services.packageUrl(Package)) {}

    void start() override
    {
        QString ignored;
        m_downloader.download(m_url, m_file, PackageBytes.size(), ignored, false);
    }
    std::optional<Outcome> outcome() const override
    {
        if (m_finished.isEmpty() && m_failed.isEmpty())
            return std::nullopt;
        const bool whole = m_failed.isEmpty() && TestSupport::contentOf(m_file) == PackageBytes;
        return whole ? Outcome::Used : Outcome::Failed;
    }

private:
    const QString m_url;
    const QTemporaryDir m_directory;
    const QString m_file = m_directory.filePath(Package);
    QNetworkAccessManager m_manager;
    CDownloader m_downloader{&m_manager};
    const QSignalSpy m_finished{&m_downloader, &CDownloader::downloadFinished};
    const QSignalSpy m_failed{&m_downloader, &CDownloader::downloadError};
};

template <typename Kind>
std::unique_ptr<Operation> make(Services& services, PluginHost& host)
{
    return std::make_unique<Kind>(services, host);
}

} // namespace

const std::vector<OperationKind>& operations()
{
    using Exceptions = std::vector<std::pair<const char*, Outcome>>;
    // The watch reads the body for any status except 200.
    static const Exceptions ofTheWatch{{"status 999", Outcome::Used},
                                       {"401 with a challenge", Outcome::Used},
                                       {"401 with an odd challenge", Outcome::Used},
                                       {"407 with a challenge", Outcome::Used}};
    // These requests leave the encoding to Qt, which decompresses. The others set encodings and accept a body
    // unchanged.
    static const Exceptions ofQtsEncoding{{"compressed", Outcome::Used},
                                          {"compressed by deflate", Outcome::Used},
                                          {"not compressed, but said to be", Outcome::Failed}};
    // The check follows no redirect.
    static const Exceptions ofTheCheck = [] {
        Exceptions exceptions = ofQtsEncoding;
        exceptions.emplace_back(redirectElsewhere().name, Outcome::Failed);
        return exceptions;
    }();
    static const std::vector<OperationKind> all{
        {"form page",
         "GET",
         QStringLiteral("/login"),
         {"200 OK", NelvoDevkit::formPage({"ticket", "e1s1"})},
         make<ReadFormPage>,
         {}},
        {"enterprises",
         "GET",
         QStringLiteral("/rs/casLogin/listCompany"),
         {"200 OK", R"([{"enterpriseId": 1001, "enterpriseName": "e"}])"},
         make<ReadEnterprises>,
         {}},
        {"projects",
         "GET",
         QStringLiteral("/scene/project"),
         {"200 OK", R"({"data": [{"id": "a", "name": "桥"}]})"},
         make<ReadProjects>,
         {}},
        {"session",
         "GET",
         QStringLiteral("/org/heartbeat"),
         {"401 Unauthorized", R"({"infoCode": "1007"})"},
         make<WatchSession>,
         ofTheWatch},
        {"models",
         "GET",
         QStringLiteral("/bim/relation/"),
         {"200 OK", R"({"data": [{"nelvo3dId": "2f1c1f0e-0000-4000-8000-000000000001", "ppName": "桥"}]})"},
         make<ReadModels>,
         {}},
        {"update",
         "POST",
         QStringLiteral("/v1.0/service/sys/productVersion/findLatest"),
         {"200 OK", R"({"code": 200, "data": {"pVersion": "1.0.1"}})"},
         make<CheckForUpdate>,
         ofTheCheck},
        {"package",
         "GET",
         QStringLiteral("/packages/package.zip"),
         {"200 OK", PackageBytes},
         make<Download>,
         ofQtsEncoding},
    };
    return all;
}

} // namespace Wire
