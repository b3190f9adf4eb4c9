#pragma once

#include "media_helper/ByteSource.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace ostrelle {

using ByteSpan = std::span<const std::uint8_t>;

/// The unsigned number that up to eight bytes are.
inline std::uint64_t bigEndian(ByteSpan bytes)
{
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 8U | byte;
    return value;
}

inline std::uint64_t littleEndian(ByteSpan bytes)
{
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i > 0; --i)
        value = value << 8U | bytes[i - 1];
    return value;
}

/// Of seven bits a byte, as in ID3v2.
inline std::uint64_t syncSafeNumber(ByteSpan bytes)
{
    std::uint64_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 7U | (byte & 0x7fU);
    return value;
}

inline std::string_view asText(ByteSpan bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

/// Whether all of `buffer` could be filled from `offset`.
inline bool readWhole(ByteSource &source, std::uint64_t offset, std::span<std::uint8_t> buffer)
{
    return source.readAt(offset, buffer) == buffer.size();
}

} // namespace ostrelle
