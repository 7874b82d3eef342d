#pragma once

#include "services/delivery.h"

#include <memory>

namespace NelvoDevkit {

//! \brief A reply as bytes, including status line and headers. It need not be valid HTTP.
struct RawAnswer {
    //! What happens to the connection after the last byte.
    enum class End {
        Close,
        Reset,
        Hold, //!< stays open until the reply is replaced or removed, then closes
    };

    QByteArray begin;
    QByteArray repeated{}; //!< sent `times` times after `begin`
    qint64 times = 0;
    QByteArray rest{}; //!< sent last
    End end = End::Close;
};

//! The delivery of such a reply. With Hold, the connection closes when the last owner releases `answer`.
Delivery rawDelivery(const std::shared_ptr<const RawAnswer>& answer);

} // namespace NelvoDevkit
