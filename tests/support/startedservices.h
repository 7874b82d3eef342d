#pragma once

#include "services/services.h"

namespace TestSupport {

//! \brief Simulated services that listen from their construction on. If this fails, the test program ends.
class StartedServices : public NelvoDevkit::Services
{
public:
    explicit StartedServices(const NelvoDevkit::ServicesOptions& options = {}) : Services(options)
    {
        QString error;
        if (!start(&error))
            qFatal("can't start the services: %s", qPrintable(error));
    }

    //! Removes faults and fixed replies, and all recorded requests.
    void reset()
    {
        clearFaults();
        clearReplies();
        log().clear();
    }

    //! The only recorded request; an empty one unless there is exactly one.
    NelvoDevkit::LoggedRequest onlyRequest() const
    {
        const QVector<NelvoDevkit::LoggedRequest> requests = log().requests();
        return requests.size() == 1 ? requests.first() : NelvoDevkit::LoggedRequest();
    }
};

//! A reply with that JSON text.
inline NelvoDevkit::HttpReply json(const QByteArray& body, int status = 200)
{
    return {status, "application/json", body, {}};
}

} // namespace TestSupport
