#pragma once

#include "services/delivery.h"

#include <QByteArrayList>

#include <vector>

namespace NelvoDevkit {

//! \brief The behaviour of one simulated service, without faults. Any thread.
class Service
{
public:
    Service() = default;
    virtual ~Service() = default;
    Q_DISABLE_COPY(Service)

    virtual Delivery answer(const HttpRequest& request) = 0;
    //! Drops the session of the client that sent the request.
    virtual void forgetSession(const HttpRequest& request) = 0;
    //! Drops every session and everything else that a restarted server has lost.
    virtual void forgetSessions() = 0;
};

//! \brief The member function of a service for a method and a path. A path that ends with * matches all paths
//!   with the part before it.
template <typename Target, typename Result = HttpReply>
struct Route {
    QByteArray method;
    QByteArray path;
    Result (Target::*answer)(const HttpRequest& request);
};

inline bool isPathOf(const QByteArray& pattern, const QByteArray& path)
{
    return pattern.endsWith('*') ? path.startsWith(pattern.chopped(1)) : path == pattern;
}

//! The reply of the matching route; 404 or 405 without one.
template <typename Target, typename Result>
Result dispatch(Target& target, const std::vector<Route<Target, Result>>& routes, const HttpRequest& request)
{
    QByteArrayList allowed;
    for (const auto& route : routes) {
        if (!isPathOf(route.path, request.path()))
            continue;
        if (route.method == request.method)
            return (target.*route.answer)(request);
        allowed.append(route.method);
    }
    if (allowed.isEmpty())
        return {textReply(404, "There is nothing at " + request.path() + '\n')};
    HttpReply refusal = textReply(405, request.path() + " takes " + allowed.join(", ") + " only\n");
    refusal.headers.append({"Allow", allowed.join(", ")});
    return {refusal};
}

} // namespace NelvoDevkit
