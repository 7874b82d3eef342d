#pragma once

#include "services/delivery.h"

#include <memory>

namespace NelvoDevkit {

//! \brief An answer byte by byte, status line and headers included. It need not be HTTP.
struct RawAnswer {
    //! What the connection does behind the last byte.
    enum class End {
        Close,
        Reset,
        Hold, //!< stays open until the answer is replaced or removed, and closes then
    };

    QByteArray begin;
    QByteArray repeated{}; //!< sent `times` times behind `begin`
    qint64 times = 0;
    QByteArray rest{}; //!< sent last
    End end = End::Close;
};

//! The delivery of such an answer. A connection that holds closes when the last owner releases `answer`.
Delivery rawDelivery(const std::shared_ptr<const RawAnswer>& answer);

} // namespace NelvoDevkit
