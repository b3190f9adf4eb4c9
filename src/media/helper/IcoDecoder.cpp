#include "media_helper/BmpRows.h"
#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ostrelle {
namespace {

constexpr std::size_t kDirectoryHeader = 6;
constexpr std::size_t kEntrySize = 16;
constexpr std::size_t kMostEntries = 64;
/// Icons are at most 256 pixels wide; what claims more is a picture in a wrong coat.
constexpr int kLargestIcon = 1024;

struct Entry
{
    int side = 0;
    int bits = 0;
    std::uint32_t size = 0;
    std::uint32_t offset = 0;
};

std::uint32_t number(const std::uint8_t *bytes, int count)
{
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i)
        value |= std::uint32_t(bytes[i]) << (8 * i);
    return value;
}

/// The largest picture, of those the one with the most colours.
std::optional<Entry> bestEntry(ByteSource &source)
{
    std::array<std::uint8_t, kDirectoryHeader + kMostEntries * kEntrySize> directory{};
    const std::size_t size = source.readAt(0, directory);
    if (size < kDirectoryHeader)
        return std::nullopt;
    const std::size_t count = std::min<std::size_t>(number(directory.data() + 4, 2), kMostEntries);
    std::optional<Entry> best;
    for (std::size_t i = 0; i < count && kDirectoryHeader + (i + 1) * kEntrySize <= size; ++i) {
        const std::uint8_t *bytes = directory.data() + kDirectoryHeader + i * kEntrySize;
        const int side = bytes[0] == 0 ? 256 : bytes[0];
        const Entry entry{side, static_cast<int>(number(bytes + 6, 2)), number(bytes + 8, 4), number(bytes + 12, 4)};
        if (!best || entry.side > best->side || (entry.side == best->side && entry.bits > best->bits))
            best = entry;
    }
    return best;
}

/// One bit a pixel after the colours, 1 is transparent; icons of 32 bits have alpha instead.
class Mask
{
public:
    Mask(ByteSource &source, int width, int height, std::uint64_t offset)
        : m_height(height)
        , m_stride(static_cast<std::size_t>((width + 31) / 32 * 4))
        , m_bytes(m_stride * static_cast<std::size_t>(height))
    {
        source.readAt(offset, m_bytes);
    }
    bool isTransparent(int x, int y) const
    {
        const std::size_t at = static_cast<std::size_t>(m_height - 1 - y) * m_stride + static_cast<std::size_t>(x / 8);
        return (m_bytes[at] >> (7 - x % 8) & 1) != 0;
    }

private:
    int m_height;
    std::size_t m_stride;
    std::vector<std::uint8_t> m_bytes;
};

HelperStatus decodeBitmap(ByteSource &source, const Entry &entry, PictureBuilder &builder)
{
    std::array<std::uint8_t, kBmpHeaderBytes> head{};
    const std::size_t count = source.readAt(entry.offset, head);
    auto header = parsedBmpHeader({head.data(), count});
    if (!header || header->isCompressed || header->width > kLargestIcon || header->height > 2 * kLargestIcon)
        return HelperStatus::Broken;
    header->height = std::max(1, header->height / 2); // the mask is counted with the picture
    if (header->bitsPerPixel == 32)
        header->masks[3] = 0xff000000U;
    const std::uint64_t palette =
        header->bitsPerPixel <= 8 ? static_cast<std::uint64_t>(header->paletteColours) * 4 : 0;
    BmpRows rows(source, *header, entry.offset, entry.offset + header->paletteOffset + palette);
    const Mask mask(source, header->width, header->height,
                    entry.offset + header->paletteOffset + palette + rows.byteSize());
    Raster icon{{header->width, header->height}, PixelLayout::Rgba, {}};
    for (int y = 0; y < header->height; ++y) {
        const std::uint8_t *row = rows.row(y);
        if (!row)
            return HelperStatus::Broken;
        icon.bytes.insert(icon.bytes.end(), row, row + icon.stride());
    }
    for (int y = 0; y < header->height && !rows.hasUsedAlpha(); ++y) {
        for (int x = 0; x < header->width; ++x)
            icon.bytes[static_cast<std::size_t>(y) * icon.stride() + 4 * static_cast<std::size_t>(x) + 3] =
                mask.isTransparent(x, y) ? 0 : 0xff;
    }
    PictureFacts facts;
    facts.full = facts.decoded = icon.size;
    facts.layout = icon.layout;
    if (!builder.begin(std::move(facts)))
        return HelperStatus::Broken;
    for (int y = 0; y < icon.size.height; ++y)
        builder.addRow(icon.bytes.data() + icon.stride() * static_cast<std::size_t>(y));
    return HelperStatus::Done;
}

} // namespace

HelperStatus decodeIco(ByteSource &source, PictureBuilder &builder)
{
    constexpr std::uint32_t kLargestEntry = 4U << 20U;
    const auto entry = bestEntry(source);
    if (!entry || entry->size == 0 || entry->size > kLargestEntry)
        return HelperStatus::Broken;
    std::array<std::uint8_t, 8> head{};
    source.readAt(entry->offset, head);
    if (head[0] != 0x89 || head[1] != 'P')
        return decodeBitmap(source, *entry, builder);
    std::vector<std::uint8_t> bytes(entry->size);
    bytes.resize(source.readAt(entry->offset, bytes));
    MemorySource png(bytes);
    return decodePng(png, builder);
}

} // namespace ostrelle
