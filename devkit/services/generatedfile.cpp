#include "services/generatedfile.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace NelvoDevkit {

namespace {

constexpr qint64 BlockSize = qint64{64} * 1024;
constexpr qint64 NumberSize = sizeof(quint64);

using Block = std::array<char, BlockSize>;

//! The content of every block, except its number at the beginning.
const Block& pattern()
{
    static const Block block = [] {
        constexpr quint32 seed = 20240229; // any constant value
        QRandomGenerator generator(seed);
        Block made{};
        std::generate(made.begin(), made.end(),
                      [&generator] { return static_cast<char>(generator.generate()); });
        return made;
    }();
    return block;
}

//! Copies the bytes of a block, starting at `offset`.
void copyBlock(qint64 number, qint64 offset, char* to, qint64 size)
{
    std::memcpy(to, pattern().data() + offset, static_cast<std::size_t>(size));
    if (offset >= NumberSize)
        return;
    std::array<char, NumberSize> head{};
    qToLittleEndian(static_cast<quint64>(number), head.data());
    std::memcpy(to, head.data() + offset, static_cast<std::size_t>(std::min(size, NumberSize - offset)));
}

} // namespace

qint64 GeneratedFile::readData(char* data, qint64 maxSize)
{
    const qint64 begin = pos();
    const qint64 size = std::min(maxSize, m_size - begin);
    for (qint64 done = 0; done < size;) {
        const qint64 offset = (begin + done) % BlockSize;
        const qint64 part = std::min(size - done, BlockSize - offset);
        copyBlock((begin + done) / BlockSize, offset, data + done, part);
        done += part;
    }
    return std::max(size, qint64{0});
}

qint64 GeneratedFile::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace NelvoDevkit
