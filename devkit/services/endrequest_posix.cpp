#include "services/endrequest.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>

#include <csignal>

namespace NelvoDevkit {

struct EndRequest::Private {
    boost::asio::io_context context;
    boost::asio::signal_set signalSet{context, SIGINT, SIGTERM};
};

EndRequest::EndRequest() : d(std::make_unique<Private>())
{
    d->signalSet.async_wait([](const boost::system::error_code& /*error*/, int /*signal*/) {});
}

EndRequest::~EndRequest() = default;

void EndRequest::wait()
{
    d->context.run();
}

} // namespace NelvoDevkit
