#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/SourceViews.h"

#include <array>

namespace ostrelle {
namespace {

constexpr std::uint64_t kFirstEntry = 6;
constexpr std::uint64_t kCursor = 2;
constexpr std::uint64_t kShortestBitmapHeader = 40;

/// The bitmap's own header, whose rows count those of the mask below it as well.
void takeBitmapSize(ByteSource &picture, ImageFacts &facts)
{
    std::array<std::uint8_t, 12> header{};
    if (!readWhole(picture, 0, header) || littleEndian(ByteSpan(header).first(4)) != kShortestBitmapHeader)
        return;
    const std::uint64_t width = littleEndian(ByteSpan(header).subspan(4, 4));
    const std::uint64_t rows = littleEndian(ByteSpan(header).subspan(8, 4));
    constexpr std::uint64_t kLargestIcon = 1024;
    if (width >= 1 && rows >= 2 && width <= kLargestIcon && rows <= 2 * kLargestIcon) {
        facts.width = static_cast<std::int64_t>(width);
        facts.height = static_cast<std::int64_t>(rows / 2);
    }
}

} // namespace

/// Of icons and cursors, which differ in a number. The directory has a byte for each side, which is too short for some.
std::optional<ImageFacts> readIcoFacts(ByteSource &source)
{
    std::array<std::uint8_t, kFirstEntry + 16> head{};
    if (!readWhole(source, 0, head))
        return std::nullopt;
    const ByteSpan entry = ByteSpan(head).subspan(kFirstEntry);
    const auto side = [](std::uint8_t byte) { return byte == 0 ? 256 : byte; };
    ImageFacts facts;
    facts.format = littleEndian(ByteSpan(head).subspan(2, 2)) == kCursor ? "CUR" : "ICO";
    facts.width = side(entry[0]);
    facts.height = side(entry[1]);
    facts.model = color_model::kRgb;
    facts.bitDepth = 8;
    // A mask at the least.
    facts.hasAlpha = true;
    const std::uint64_t begin = littleEndian(entry.subspan(12, 4));
    PartialSource picture(source, begin, begin + littleEndian(entry.subspan(8, 4)));
    if (const auto png = readPngFacts(picture)) {
        facts.width = png->width;
        facts.height = png->height;
        facts.bitDepth = png->bitDepth;
    } else {
        takeBitmapSize(picture, facts);
    }
    return facts;
}

} // namespace ostrelle
