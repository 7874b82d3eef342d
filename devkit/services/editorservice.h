#pragma once

#include "services/service.h"

#include <mutex>
#include <set>

namespace NelvoDevkit {

//! \brief The editor service. It knows a client by its EDITORSESSION cookie, which it hands to whoever
//! comes without a valid one.
class EditorService final : public Service
{
public:
    HttpReply answer(const HttpRequest& request) override;
    void forgetSession(const HttpRequest& request) override;
    void forgetSessions() override;

private:
    HttpReply heartbeat(const HttpRequest& request);

    std::mutex m_mutex;
    std::set<QByteArray> m_sessions;
};

} // namespace NelvoDevkit
