#include "media_helper/BmpHeader.h"
#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"

#include <array>
#include <bit>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::uint64_t kFileHeader = 14;
constexpr std::size_t kResolutionOffset = 24; ///< pixels per metre, of every header but OS/2's
constexpr std::size_t kInfoHeader = 40;
constexpr std::size_t kProfileHeader = 124; ///< BITMAPV5HEADER
constexpr std::size_t kLargestProfile = 4U << 20U;
constexpr double kMetresPerInch = 0.0254;

/// BITMAPV5HEADER: the profile may lie behind the pixels, at an offset from the begin of the header.
std::vector<std::uint8_t> profileIn(ByteSource &source, ByteSpan header)
{
    constexpr std::uint64_t kEmbedded = 0x4d424544; // "MBED"
    if (header.size() < kProfileHeader || littleEndian(header.subspan(56, 4)) != kEmbedded)
        return {};
    const std::uint64_t size = littleEndian(header.subspan(116, 4));
    std::vector<std::uint8_t> profile(size <= kLargestProfile ? static_cast<std::size_t>(size) : 0);
    profile.resize(source.readAt(kFileHeader + littleEndian(header.subspan(112, 4)), profile));
    return profile;
}

} // namespace

std::optional<ImageFacts> readBmpFacts(ByteSource &source)
{
    std::array<std::uint8_t, kBmpHeaderBytes> bytes{};
    const ByteSpan head = ByteSpan(bytes).first(source.readAt(kFileHeader, bytes));
    const auto header = parsedBmpHeader(head);
    if (!header)
        return std::nullopt;
    ImageFacts facts;
    facts.format = "BMP";
    facts.width = header->width;
    facts.height = header->height;
    facts.model = color_model::kRgb;
    const bool hasMasks = header->bitsPerPixel >= 16 && header->masks[0] != 0;
    facts.bitDepth = hasMasks ? std::popcount(header->masks[0]) : 8;
    facts.hasAlpha = header->masks[3] != 0;
    const std::uint64_t size = littleEndian(head.first(4));
    if (size >= kInfoHeader && head.size() >= kInfoHeader) {
        const double perMetre = static_cast<double>(littleEndian(head.subspan(kResolutionOffset, 4)));
        if (perMetre > 0)
            facts.dpi = perMetre * kMetresPerInch;
    }
    if (size >= kProfileHeader)
        facts.icc = profileIn(source, head);
    return facts;
}

} // namespace ostrelle
