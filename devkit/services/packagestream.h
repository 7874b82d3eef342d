#pragma once

#include "services/delivery.h"
#include "services/packages.h"

#include <QByteArray>

class QIODevice;

namespace NelvoDevkit {

//! \brief The rest of a package from where the device stands, as its delivery has it.
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

    //! Bytes that may go out before the delivery's end comes.
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
    Clock::time_point m_due; //!< when the next piece may go out, where they are paced
};

} // namespace NelvoDevkit
