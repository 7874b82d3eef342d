#pragma once

#include <QIODevice>

namespace NelvoDevkit {

//! \brief A file of any size that is stored nowhere: its bytes are computed from their positions.
//!
//! Read only. Blocks of 64 KiB all differ, so lost, repeated or displaced bytes are detected.
class GeneratedFile final : public QIODevice
{
public:
    explicit GeneratedFile(qint64 size) : m_size(size) {}

    qint64 size() const override { return m_size; }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    const qint64 m_size;
};

} // namespace NelvoDevkit
