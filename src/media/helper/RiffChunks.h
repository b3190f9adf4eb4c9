#pragma once

#include "media_helper/ByteFields.h"
#include "media_helper/ByteSource.h"

#include <array>
#include <optional>
#include <string_view>

namespace ostrelle {

/// One chunk of a WAV or AIFF file; its name is four letters.
struct RiffChunk
{
    std::array<std::uint8_t, 4> letters{};
    std::uint64_t begin = 0; ///< of its content
    std::uint64_t size = 0;

    std::string_view name() const { return asText(letters); }
};

/// The chunks of a file, one after the other; they are only hopped over.
class RiffChunks
{
public:
    enum class Order {
        LittleEndian, ///< RIFF and RF64
        BigEndian,    ///< AIFF
    };

    RiffChunks(ByteSource &source, Order order)
        : m_source(source)
        , m_order(order)
    {
    }
    /// Nothing at the end, and behind one that is said to reach beyond it.
    std::optional<RiffChunk> next();

private:
    std::uint64_t number(ByteSpan bytes) const
    {
        return m_order == Order::LittleEndian ? littleEndian(bytes) : bigEndian(bytes);
    }

    ByteSource &m_source;
    Order m_order;
    std::uint64_t m_at = 12;
    std::uint64_t m_dataSize = 0; ///< of a chunk too long for its own field
};

} // namespace ostrelle
