#include "media_helper/TrailingTags.h"

#include "media_helper/ByteFields.h"
#include "media_helper/Id3Tag.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace ostrelle {
namespace {

constexpr std::uint64_t kId3v1 = 128;
constexpr std::uint64_t kId3Footer = 10;
constexpr std::uint64_t kApeFooter = 32;
constexpr std::uint64_t kLyricsEnd = 15;
/// Each kind once, in any order.
constexpr int kMostTags = 4;

template <std::size_t size>
std::array<std::uint8_t, size> lastBytes(ByteSource &source, std::uint64_t end)
{
    std::array<std::uint8_t, size> bytes{};
    if (end < size || !readWhole(source, end - size, bytes))
        bytes.fill(0);
    return bytes;
}

std::uint64_t id3v1Size(ByteSource &source, std::uint64_t end)
{
    const auto tag = lastBytes<kId3v1>(source, end);
    return asText(tag).substr(0, 3) == "TAG" ? kId3v1 : 0;
}

/// Its footer is the header with another name.
std::uint64_t appendedId3Size(ByteSource &source, std::uint64_t end)
{
    const auto footer = lastBytes<kId3Footer>(source, end);
    if (asText(footer).substr(0, 3) != "3DI")
        return 0;
    const std::uint64_t size = 2 * kId3Footer + syncSafeNumber(ByteSpan(footer).subspan(6));
    return size <= end && id3TagSize(source, end - size) == size ? size : 0;
}

std::uint64_t apeSize(ByteSource &source, std::uint64_t end)
{
    const auto footer = lastBytes<kApeFooter>(source, end);
    if (asText(footer).substr(0, 8) != "APETAGEX")
        return 0;
    const bool hasHeader = (footer[23] & 0x80U) != 0;
    return littleEndian(ByteSpan(footer).subspan(12, 4)) + (hasHeader ? kApeFooter : 0);
}

std::uint64_t lyricsSize(ByteSource &source, std::uint64_t end)
{
    const auto bytes = lastBytes<kLyricsEnd>(source, end);
    const std::string_view text = asText(bytes);
    std::uint64_t size = 0;
    const bool isTag =
        text.substr(6) == "LYRICS200" && std::from_chars(text.data(), text.data() + 6, size).ptr == text.data() + 6;
    return isTag ? size + kLyricsEnd : 0;
}

} // namespace

std::uint64_t endBeforeTags(ByteSource &source)
{
    std::uint64_t end = source.size();
    for (int tags = 0; tags < kMostTags; ++tags) {
        std::uint64_t size = 0;
        for (const auto tagSize : {id3v1Size, appendedId3Size, apeSize, lyricsSize}) {
            if (size == 0)
                size = tagSize(source, end);
        }
        if (size == 0 || size > end)
            break;
        end -= size;
    }
    return end;
}

} // namespace ostrelle
