#pragma once

#include "services/services.h"

namespace TestSupport {

//! \brief The simulated services, which listen from the construction on. If they can't, the test ends here.
class StartedServices : public NelvoDevkit::Services
{
public:
    explicit StartedServices(const NelvoDevkit::ServicesOptions& options = {}) : Services(options)
    {
        QString error;
        if (!start(&error))
            qFatal("can't start the services: %s", qPrintable(error));
    }

    //! Removes faults and fixed replies, and forgets the requests so far.
    void reset()
    {
        clearFaults();
        clearReplies();
        log().clear();
    }

    //! The request that came in; an empty one unless there is exactly one.
    NelvoDevkit::LoggedRequest onlyRequest() const
    {
        const QVector<NelvoDevkit::LoggedRequest> requests = log().requests();
        return requests.size() == 1 ? requests.first() : NelvoDevkit::LoggedRequest();
    }
};

//! A reply of that JSON text.
inline NelvoDevkit::HttpReply json(const QByteArray& body, int status = 200)
{
    return {status, "application/json", body, {}};
}

} // namespace TestSupport
