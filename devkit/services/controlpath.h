#pragma once

#include "services/updatecontrol.h"

namespace NelvoDevkit {

//! \brief The control path: HTTP requests with which users and scripts control the running simulator.
class ControlPath
{
public:
    explicit ControlPath(Services& services);

    HttpReply answer(const HttpRequest& request);

private:
    HttpReply help(const HttpRequest& request);
    HttpReply listRequests(const HttpRequest& request);
    HttpReply clearRequests(const HttpRequest& request);
    HttpReply listFaults(const HttpRequest& request);
    HttpReply addFault(const HttpRequest& request);
    HttpReply clearFaults(const HttpRequest& request);
    HttpReply forgetSessions(const HttpRequest& request);
    HttpReply pushOut(const HttpRequest& request);
    HttpReply showState(const HttpRequest& request);
    HttpReply resetState(const HttpRequest& request);
    HttpReply generate(const HttpRequest& request);

    Services& m_services;
    UpdateControl m_updates;
};

} // namespace NelvoDevkit
