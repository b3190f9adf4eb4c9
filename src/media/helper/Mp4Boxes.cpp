#include "media_helper/Mp4Boxes.h"

#include "media_helper/ByteFields.h"

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

constexpr std::uint64_t kHeader = 8;
constexpr std::uint64_t kLongHeader = 16;

} // namespace

std::optional<Mp4Box> Mp4Walk::next()
{
    std::array<std::uint8_t, kLongHeader> bytes{};
    if (m_at + kHeader > m_end || !readWhole(m_source, m_at, std::span(bytes).first(kHeader)))
        return std::nullopt;
    std::uint64_t header = kHeader;
    std::uint64_t size = bigEndian(ByteSpan(bytes).first(4));
    if (size == 1) {
        header = kLongHeader;
        if (!readWhole(m_source, m_at + kHeader, std::span(bytes).subspan(kHeader)))
            return std::nullopt;
        size = bigEndian(ByteSpan(bytes).subspan(kHeader));
    } else if (size == 0) { // up to the end
        size = m_end - m_at;
    }
    if (size < header)
        return std::nullopt;
    Mp4Box box;
    box.type = static_cast<std::uint32_t>(bigEndian(ByteSpan(bytes).subspan(4, 4)));
    box.begin = m_at + header;
    box.end = m_at + std::min(size, m_end - m_at);
    m_at = box.end;
    return box.begin <= box.end ? std::optional(box) : std::nullopt;
}

std::optional<Mp4Box> Mp4Walk::next(std::string_view type)
{
    std::optional<Mp4Box> box = next();
    while (box && box->type != mp4Type(type))
        box = next();
    return box;
}

std::optional<Mp4Box> findMp4Box(ByteSource &source, const Mp4Box &parent, std::initializer_list<std::string_view> path)
{
    std::optional<Mp4Box> box = parent;
    for (const std::string_view type : path) {
        if (box)
            box = Mp4Walk(source, *box).next(type);
    }
    return box;
}

} // namespace ostrelle
