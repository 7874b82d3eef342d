#include "services/rawanswer.h"

#include <algorithm>

namespace NelvoDevkit {

namespace {

//! \brief Sends a raw reply, with the repeated bytes in pieces.
class RawStream final : public BodyStream
{
public:
    explicit RawStream(const std::shared_ptr<const RawAnswer>& answer) : m_answer(*answer), m_owned(answer) {}

    qint64 announcedSize() const override { return 0; }

    BodyStep next() override
    {
        switch (m_stage) {
        case Stage::Begin:
            m_stage = Stage::Repeated;
            return written(m_answer.begin);
        case Stage::Repeated:
            return repeatedStep();
        case Stage::Rest:
            m_stage = Stage::End;
            return written(m_answer.rest);
        case Stage::End:
            break;
        }
        return lastStep();
    }

private:
    enum class Stage { Begin, Repeated, Rest, End };

    static BodyStep written(const QByteArray& bytes)
    {
        return {BodyStep::Kind::Write, {bytes.constData(), static_cast<std::size_t>(bytes.size())}};
    }

    BodyStep repeatedStep()
    {
        constexpr qint64 pieceSize = 16384;
        const qint64 most = std::max<qint64>(1, pieceSize / std::max(1, m_answer.repeated.size()));
        const qint64 now = std::min(m_answer.times - m_repeated, most);
        m_repeated += now;
        if (m_repeated == m_answer.times)
            m_stage = Stage::Rest;
        m_piece = m_answer.repeated.repeated(static_cast<int>(now));
        return written(m_piece);
    }

    BodyStep lastStep() const
    {
        if (m_answer.end == RawAnswer::End::Reset)
            return {BodyStep::Kind::Reset};
        if (m_answer.end == RawAnswer::End::Hold && !m_owned.expired())
            return {BodyStep::Kind::Wait, {}, std::chrono::milliseconds(5)};
        return {BodyStep::Kind::End};
    }

    const RawAnswer m_answer;
    const std::weak_ptr<const RawAnswer> m_owned;
    Stage m_stage = Stage::Begin;
    qint64 m_repeated = 0;
    QByteArray m_piece;
};

} // namespace

Delivery rawDelivery(const std::shared_ptr<const RawAnswer>& answer)
{
    return {{}, Delivery::Manner::Raw, std::make_shared<RawStream>(answer)};
}

} // namespace NelvoDevkit
