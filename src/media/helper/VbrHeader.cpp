#include "media_helper/VbrHeader.h"

#include "media_helper/ByteFields.h"

namespace ostrelle {
namespace {

// Of the fields that may stand in a Xing header.
constexpr unsigned kHasFrames = 1;
constexpr unsigned kHasBytes = 2;
constexpr unsigned kHasPlaces = 4;
constexpr unsigned kHasQuality = 8;
constexpr std::size_t kPlaces = 100;
/// LAME's part behind them: where the name of the encoder begins, and where its delays stand from there.
constexpr std::size_t kDelays = 21;

/// A cursor over the fields, which reads zeros behind the end.
class Fields
{
public:
    explicit Fields(ByteSpan bytes)
        : m_bytes(bytes)
    {
    }
    ByteSpan take(std::size_t size)
    {
        const ByteSpan field = m_bytes.first(std::min(size, m_bytes.size()));
        m_bytes = m_bytes.subspan(field.size());
        return field.size() == size ? field : ByteSpan();
    }
    std::uint64_t number(std::size_t size) { return bigEndian(take(size)); }

private:
    ByteSpan m_bytes;
};

VbrHeader xingHeader(ByteSpan bytes)
{
    Fields fields(bytes);
    VbrHeader header;
    const auto flags = static_cast<unsigned>(fields.number(4));
    header.frames = (flags & kHasFrames) != 0 ? fields.number(4) : 0;
    header.bytes = (flags & kHasBytes) != 0 ? fields.number(4) : 0;
    fields.take((flags & kHasPlaces) != 0 ? kPlaces : 0);
    fields.take((flags & kHasQuality) != 0 ? 4 : 0);
    const bool hasEncoder = fields.number(1) != 0;
    fields.take(kDelays - 1);
    const auto delays = static_cast<unsigned>(fields.number(3));
    if (hasEncoder) {
        header.delay = delays >> 12U;
        header.padding = delays & 0xfffU;
    }
    return header;
}

VbrHeader vbriHeader(ByteSpan bytes)
{
    Fields fields(bytes);
    fields.take(6); // version, delay, quality
    VbrHeader header;
    header.bytes = fields.number(4);
    header.frames = fields.number(4);
    return header;
}

} // namespace

std::optional<VbrHeader> readVbrHeader(std::span<const std::uint8_t> frame)
{
    const std::string_view text = asText(frame);
    std::optional<VbrHeader> header;
    for (const std::string_view name : {"Xing", "Info", "VBRI"}) {
        // It stands behind the side information, whose length depends on version, channels and checksum.
        const std::size_t place = text.substr(0, 64).find(name);
        if (place != std::string_view::npos && !header)
            header = (name == "VBRI" ? vbriHeader : xingHeader)(frame.subspan(place + name.size()));
    }
    return header && header->frames > 0 ? header : std::nullopt;
}

} // namespace ostrelle
