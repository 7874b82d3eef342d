#pragma once

#include <QIODevice>

namespace NelvoDevkit {

//! \brief A file of any size that is nowhere: its bytes follow from where they stand.
//!
//! Read only. No two of its blocks of 64 KiB are alike, so bytes that are lost, doubled or displaced show.
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
