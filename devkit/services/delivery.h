#pragma once

#include "services/httpmessage.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string_view>

namespace NelvoDevkit {

//! \brief What a connection is to do next for the body of an answer.
struct BodyStep {
    enum class Kind {
        Write, //!< sends `bytes`, then asks anew
        Wait,  //!< waits for `time`, then asks anew
        End,   //!< is done
        Reset, //!< resets itself
    };

    Kind kind = Kind::End;
    std::string_view bytes{}; //!< until the next step is asked for
    std::chrono::milliseconds time{};
};

//! \brief The body of one answer that is made while it goes out, on the connection's thread.
class BodyStream
{
public:
    BodyStream() = default;
    virtual ~BodyStream() = default;
    Q_DISABLE_COPY(BodyStream)

    //! The size that the head announces. If the steps write another one, the connection isn't kept. Without
    //! meaning where the answer is raw.
    virtual qint64 announcedSize() const = 0;
    virtual BodyStep next() = 0;
};

//! \brief An answer and how it goes out.
struct Delivery {
    enum class Manner {
        Whole,
        Raw,      //!< the stream is the whole answer, status line and headers included
        HalfBody, //!< the head announces the whole body, half of it follows, then the connection ends
        Reset,    //!< nothing goes out, the connection is reset
        Drop,     //!< nothing goes out, the connection ends
    };

    HttpReply reply;
    Manner manner = Manner::Whole;
    std::shared_ptr<BodyStream> stream = nullptr; //!< in place of the reply's own body, if there is one
};

//! Answers a request on the connection's thread; may take its time.
using RequestHandler = std::function<Delivery(const HttpRequest&)>;

} // namespace NelvoDevkit
