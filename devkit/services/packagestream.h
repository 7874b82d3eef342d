#pragma once

#include "services/delivery.h"
#include "services/packages.h"

#include <QByteArray>

class QIODevice;

namespace NelvoDevkit {

//! \brief Sends the rest of a package, from the device's position, according to its delivery.
class PackageStream final : public BodyStream
{
public:
    PackageStream(const Packages& packages, const QString& name, const Packages::Shipment& shipment,
                  std::unique_ptr<QIODevice> device);
    ~PackageStream() override;

    qint64 announcedSize() const override;
    BodyStep next() override;

private:
    using Clock = std::chrono::steady_clock;

    //! Number of bytes that may be sent before the delivery ends.
    qint64 allowance() const;
    BodyStep end() const;
    BodyStep write(qint64 size);

    const Packages& m_packages;
    const QString m_name;
    const Packages::Shipment m_shipment;
    const std::unique_ptr<QIODevice> m_device;
    const qint64 m_size;
    QByteArray m_piece;
    qint64 m_written = 0;
    Clock::time_point m_due; //!< when the next paced piece may be sent
};

} // namespace NelvoDevkit
