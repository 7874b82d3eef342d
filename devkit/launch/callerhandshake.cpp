#include "launch/callerhandshake.h"

#include <algorithm>
#include <cstring>

namespace NelvoDevkit {

std::array<char, CallerHandshake::BlockSize> CallerHandshake::block() const
{
    std::array<char, BlockSize> content{};
    std::memcpy(content.data(), m_block, BlockSize);
    return content;
}

void CallerHandshake::fillBlock(const std::array<char, BlockSize>& content)
{
    std::memcpy(m_block, content.data(), BlockSize);
}

std::string CallerHandshake::text() const
{
    const auto bytes = block();
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), '\0')};
}

} // namespace NelvoDevkit
