#include "services/generatedfile.h"

#include <QRandomGenerator>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace NelvoDevkit {

namespace {

constexpr qint64 blockSize = qint64{64} * 1024;
constexpr qint64 numberSize = sizeof(quint64);

using Block = std::array<char, blockSize>;

//! What every block holds but for its number, by which it begins.
const Block& pattern()
{
    static const Block block = [] {
        constexpr quint32 seed = 20240229; // any will do as long as it stays
        QRandomGenerator generator(seed);
        Block made{};
        std::generate(made.begin(), made.end(),
                      [&generator] { return static_cast<char>(generator.generate()); });
        return made;
    }();
    return block;
}

//! Copies the bytes of a block from `offset` on.
void copyBlock(qint64 number, qint64 offset, char* to, qint64 size)
{
    std::memcpy(to, pattern().data() + offset, static_cast<std::size_t>(size));
    if (offset >= numberSize)
        return;
    std::array<char, numberSize> head{};
    qToLittleEndian(static_cast<quint64>(number), head.data());
    std::memcpy(to, head.data() + offset, static_cast<std::size_t>(std::min(size, numberSize - offset)));
}

} // namespace

qint64 GeneratedFile::readData(char* data, qint64 maxSize)
{
    const qint64 begin = pos();
    const qint64 size = std::min(maxSize, m_size - begin);
    for (qint64 done = 0; done < size;) {
        const qint64 offset = (begin + done) % blockSize;
        const qint64 part = std::min(size - done, blockSize - offset);
        copyBlock((begin + done) / blockSize, offset, data + done, part);
        done += part;
    }
    return std::max(size, qint64{0});
}

qint64 GeneratedFile::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace NelvoDevkit
