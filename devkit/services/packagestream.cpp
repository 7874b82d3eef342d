#include "services/packagestream.h"

#include <QIODevice>

#include <algorithm>

namespace NelvoDevkit {

namespace {

using End = PackageDelivery::End;
using Kind = BodyStep::Kind;

constexpr qint64 PieceSize = qint64{256} * 1024; // fits into the processor's cache
constexpr std::chrono::milliseconds StallStep{10};

} // namespace

PackageStream::PackageStream(const Packages& packages, const QString& name,
                             const Packages::Shipment& shipment, std::unique_ptr<QIODevice> device)
    : m_packages(packages)
    , m_name(name)
    , m_shipment(shipment)
    , m_device(std::move(device))
    , m_size(m_device->size() - m_device->pos())
    , m_due(Clock::now())
{}

PackageStream::~PackageStream() = default;

qint64 PackageStream::announcedSize() const
{
    return m_shipment.delivery.announcedSize.value_or(m_size);
}

BodyStep PackageStream::next()
{
    const PackageDelivery& delivery = m_shipment.delivery;
    const qint64 allowed = std::min(allowance(), m_size) - m_written;
    if (allowed <= 0)
        return end();
    if (delivery.paceBytes <= 0)
        return write(std::min(allowed, PieceSize));
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(m_due - Clock::now());
    if (wait.count() > 0)
        return {Kind::Wait, {}, wait};
    m_due += std::chrono::milliseconds(delivery.paceMilliseconds);
    return write(std::min(allowed, delivery.paceBytes));
}

qint64 PackageStream::allowance() const
{
    const bool isReleased =
        m_shipment.delivery.end == End::Stall && m_packages.isOutdated(m_name, m_shipment);
    return m_shipment.delivery.end == End::Whole || isReleased ? m_size : m_shipment.delivery.endAfter;
}

BodyStep PackageStream::end() const
{
    const bool isAtTheEnd = m_written >= m_size;
    switch (m_shipment.delivery.end) {
    case End::Stall:
        if (!isAtTheEnd)
            return {Kind::Wait, {}, StallStep};
        break;
    case End::Reset:
        return {Kind::Reset, {}, {}};
    case End::Whole:
    case End::Cut:
        break;
    }
    return {Kind::End, {}, {}};
}

BodyStep PackageStream::write(qint64 size)
{
    m_piece.resize(static_cast<int>(size));
    const qint64 read = m_device->read(m_piece.data(), size);
    if (read <= 0) // the file has become shorter
        return {Kind::End, {}, {}};
    m_written += read;
    return {Kind::Write, {m_piece.constData(), static_cast<std::size_t>(read)}, {}};
}

} // namespace NelvoDevkit
