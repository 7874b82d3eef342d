#include "bim/vldbid.h"

#include <array>
#include <cwchar>
#include <limits>
#include <optional>

namespace NelvoPlugin {

using VLSmartDB::VLDBId;

namespace {

constexpr std::size_t GuidLength = 36;
const std::wstring NoObject = L"none";

//! Reads `count` characters of `text`, starting at `first`, as one hexadecimal number, truncated to the
//! field's size.
template <typename Field>
bool readField(const std::wstring& text, std::size_t first, std::size_t count, Field& field)
{
    const std::wstring digits = text.substr(first, count);
    wchar_t* end = nullptr;
    const unsigned long number = std::wcstoul(digits.c_str(), &end, 16);
    field = static_cast<Field>(number & std::numeric_limits<Field>::max());
    return end == digits.c_str() + digits.size();
}

//! The positions of the last eight bytes in the text.
constexpr std::array<std::size_t, 8> BytePositions{19, 21, 24, 26, 28, 30, 32, 34};

std::optional<VLDBId> parseGuid(const std::wstring& text)
{
    VLDBId id{};
    if (text.size() != GuidLength || !readField(text, 0, 8, id.data1) || !readField(text, 9, 4, id.data2) ||
        !readField(text, 14, 4, id.data3))
        return {};
    for (std::size_t i = 0; i < BytePositions.size(); ++i) {
        if (!readField(text, BytePositions[i], 2, id.data4[i]))
            return {};
    }
    return id;
}

} // namespace

VLDBId toVldbId(const std::wstring& text)
{
    if (const std::optional<VLDBId> guid = parseGuid(text))
        return *guid;
    VLDBId id{};
    id.text = text.empty() ? NoObject : text;
    return id;
}

std::wstring vldbIdText(const VLDBId& id)
{
    if (!id.text.empty())
        return id.text == NoObject ? std::wstring() : id.text;
    std::array<wchar_t, 100> buffer{};
    const auto& tail = id.data4;
    std::swprintf(buffer.data(), buffer.size(), L"%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", id.data1,
                  id.data2, id.data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6], tail[7]);
    return buffer.data();
}

} // namespace NelvoPlugin
