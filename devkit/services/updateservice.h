#pragma once

#include "services/seed.h"
#include "services/service.h"

#include <mutex>

namespace NelvoDevkit {

//! \brief The update service, which knows the latest release of each product.
class UpdateService final : public Service
{
public:
    explicit UpdateService(const Seed& seed);

    //! The base address of the package server, without a trailing slash.
    void setPackageUrl(const QString& url);

    Delivery answer(const HttpRequest& request) override;
    //! The service has no sessions.
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    //! The access token that requests for releases need.
    QString token() const { return m_token; }
    //! Sets the product's latest release.
    void setRelease(const QString& productId, const Release& release);
    //! The releases by product, with complete URLs.
    QMap<QString, Release> releases() const;
    //! Restores the data of the seed.
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
