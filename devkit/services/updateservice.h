#pragma once

#include "services/seed.h"
#include "services/service.h"

#include <mutex>

namespace NelvoDevkit {

//! \brief The update service: which release of a product is the latest one.
class UpdateService final : public Service
{
public:
    //! The token lets one ask; `releases` are those of the seed, by product.
    UpdateService(const QString& token, const QMap<QString, Release>& releases);

    Delivery answer(const HttpRequest& request) override;
    //! It knows no sessions.
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

    QString token() const { return m_token; }
    void setRelease(const QString& productId, const Release& release);
    QMap<QString, Release> releases() const;
    //! Goes back to the seed.
    void reset();

private:
    HttpReply findLatest(const HttpRequest& request);

    const QString m_token;
    const QMap<QString, Release> m_seed;
    mutable std::mutex m_mutex;
    QMap<QString, Release> m_releases;
};

} // namespace NelvoDevkit
