#include "services/updateservice.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QUrlQuery>

namespace NelvoDevkit {

namespace {

HttpReply result(int code, const QString& message, const QJsonObject& data = {})
{
    return jsonReply(QJsonObject{{QStringLiteral("code"), code},
                                 {QStringLiteral("message"), message},
                                 {QStringLiteral("data"), data}});
}

QJsonObject toJson(const Release& release)
{
    return {{QStringLiteral("pVersion"), release.version},
            {QStringLiteral("remarks"), release.remarks},
            {QStringLiteral("fullMd5"), release.md5},
            {QStringLiteral("fullSize"), release.size},
            {QStringLiteral("fullPath"), release.path}};
}

QString parameter(const HttpRequest& request, const QString& name)
{
    const QUrlQuery query(QString::fromUtf8(request.target.mid(request.path().size() + 1)));
    return query.queryItemValue(name, QUrl::FullyDecoded);
}

} // namespace

UpdateService::UpdateService(const Seed& seed)
    : m_token(seed.updateToken), m_seed(seed.releases), m_releases(seed.releases)
{}

void UpdateService::setPackageUrl(const QString& url)
{
    const std::lock_guard lock(m_mutex);
    m_packageUrl = url;
}

Delivery UpdateService::answer(const HttpRequest& request)
{
    static const std::vector<Route<UpdateService>> routes = {
        {"POST", "/v1.0/service/sys/productVersion/findLatest", &UpdateService::findLatest},
    };
    return {dispatch(*this, routes, request)};
}

void UpdateService::forgetSession(const HttpRequest& /*request*/) {}

void UpdateService::forgetSessions() {}

void UpdateService::setRelease(const QString& productId, const Release& release)
{
    const std::lock_guard lock(m_mutex);
    m_releases.insert(productId, release);
}

QMap<QString, Release> UpdateService::releases() const
{
    const std::lock_guard lock(m_mutex);
    QMap<QString, Release> releases = m_releases;
    for (Release& release : releases) {
        if (release.path.startsWith(QLatin1Char('/')))
            release.path.prepend(m_packageUrl);
    }
    return releases;
}

void UpdateService::reset()
{
    const std::lock_guard lock(m_mutex);
    m_releases = m_seed;
}

//! Accepts any version of the client: the client compares the versions.
HttpReply UpdateService::findLatest(const HttpRequest& request)
{
    const QString productId = parameter(request, QStringLiteral("productId"));
    if (m_token.isEmpty() || parameter(request, QStringLiteral("access_token")) != m_token)
        return result(401, QStringLiteral("访问令牌无效"));
    const bool isWellFormed = QJsonDocument::fromJson(request.body).isObject() &&
                              !parameter(request, QStringLiteral("productVersion")).isEmpty();
    if (!isWellFormed)
        return result(400, QStringLiteral("请求须为 JSON 对象，并带有 productVersion"));
    const QMap<QString, Release> known = releases();
    const auto found = known.find(productId);
    if (found == known.end())
        return result(404, QStringLiteral("产品 %1 没有可用版本").arg(productId));
    return result(200, QStringLiteral("ok"), toJson(*found));
}

} // namespace NelvoDevkit
