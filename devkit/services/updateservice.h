#pragma once

#include "services/seed.h"
#include "services/service.h"

#include <mutex>

namespace NelvoDevkit {

//! \brief The update service: which release of a product is the latest one.
class UpdateService final : public Service
{
public:
    explicit UpdateService(const Seed& seed);

    //! The base address of the package server, without a trailing slash.
    void setPackageUrl(const QString& url);

    Delivery answer(const HttpRequest& request) override;
    //! It knows no sessions.
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    //! The access token with which one may ask for releases.
    QString token() const { return m_token; }
    //! From now on this is the product's latest release.
    void setRelease(const QString& productId, const Release& release);
    //! The releases in offer by product, with whole URLs.
    QMap<QString, Release> releases() const;
    //! Goes back to the seed.
    void reset();

private:
    HttpReply findLatest(const HttpRequest& request);

    const QString m_token;
    const QMap<QString, Release> m_seed;
    mutable std::mutex m_mutex;
    QString m_packageUrl;
    QMap<QString, Release> m_releases;
};

} // namespace NelvoDevkit
