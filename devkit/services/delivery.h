#pragma once

#include "services/httpmessage.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace NelvoDevkit {

//! \brief The next action of a connection for the body of a reply.
struct BodyStep {
    enum class Kind {
        Write, //!< sends `bytes`, then requests the next step
        Wait,  //!< waits for `time`, then requests the next step
        End,   //!< the body is complete
        Reset, //!< resets the connection
    };

    Kind kind = Kind::End;
    std::string_view bytes{}; //!< valid until the next step is requested
    std::chrono::milliseconds time{};
};

//! \brief The body of one reply, created while it is sent, on the connection's thread.
class BodyStream
{
public:
    BodyStream() = default;
    virtual ~BodyStream() = default;
    Q_DISABLE_COPY(BodyStream)

    //! The size in the head. If the steps write another size, the connection is not kept. Unused in a raw
    //! reply.
    virtual qint64 announcedSize() const = 0;
    virtual BodyStep next() = 0;
};

//! \brief A reply and how it is sent.
struct Delivery {
    enum class Manner {
        Whole,
        Raw,      //!< the stream is the whole reply, including status line and headers
        HalfBody, //!< the head contains the size of the whole body, half of it follows, then the connection
                  //!< ends
        Reset,    //!< sends nothing and resets the connection
        Drop,     //!< sends nothing and ends the connection
    };

    HttpReply reply;
    Manner manner = Manner::Whole;
    std::shared_ptr<BodyStream> stream = nullptr; //!< replaces the body of the reply, if set
};

//! Replies to a request on the connection's thread. May block.
using RequestHandler = std::function<Delivery(const HttpRequest&)>;

} // namespace NelvoDevkit
