#include "media_helper/BmpRows.h"
#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"

#include <array>

namespace ostrelle {
namespace {

constexpr std::uint64_t kFileHeaderBytes = 14;

} // namespace

HelperStatus decodeBmp(ByteSource &source, PictureBuilder &builder)
{
    std::array<std::uint8_t, kFileHeaderBytes + kBmpHeaderBytes> head{};
    const std::size_t count = source.readAt(0, head);
    if (count <= kFileHeaderBytes)
        return HelperStatus::Broken;
    const auto header = parsedBmpHeader({head.data() + kFileHeaderBytes, count - kFileHeaderBytes});
    if (!header)
        return HelperStatus::Broken;
    if (header->isCompressed)
        return HelperStatus::Declined;
    const std::uint64_t pixels = std::uint64_t(head[10]) | std::uint64_t(head[11]) << 8U |
                                 std::uint64_t(head[12]) << 16U | std::uint64_t(head[13]) << 24U;
    BmpRows rows(source, *header, kFileHeaderBytes, pixels);
    PictureFacts facts;
    facts.full = facts.decoded = {header->width, header->height};
    facts.layout = PixelLayout::Rgba;
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    for (int y = 0; y < header->height; ++y) {
        const std::uint8_t *row = rows.row(y);
        if (!row)
            return HelperStatus::Broken;
        builder.addRow(row);
    }
    return HelperStatus::Done;
}

} // namespace ostrelle
