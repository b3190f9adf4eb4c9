#include "media_helper/ImageFacts.h"
#include "media_helper/TiffDirectory.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr std::uint64_t kLargestProfile = 4U << 20U;
constexpr std::uint64_t kPalette = 3;
constexpr std::uint64_t kAssociatedAlpha = 1;
constexpr std::uint64_t kUnassociatedAlpha = 2;

/// TIFF 6.0 and its supplements, PhotometricInterpretation.
std::string_view modelOf(std::uint64_t photometric)
{
    switch (photometric) {
    case 0:     // white is zero
    case 1:     // black is zero
    case 4:     // mask
    case 32844: // logarithmic luminance
        return color_model::kGray;
    case 5:
        return color_model::kCmyk;
    case 8:  // CIE
    case 9:  // ICC
    case 10: // ITU
        return color_model::kLab;
    default:
        return color_model::kRgb;
    }
}

bool hasAlpha(const TiffDirectory &directory)
{
    const auto kinds = directory.numbers(tiff_tag::kExtraSamples);
    return std::any_of(kinds.begin(), kinds.end(),
                       [](std::uint64_t kind) { return kind == kAssociatedAlpha || kind == kUnassociatedAlpha; });
}

ImageFacts factsOf(const TiffDirectory &directory)
{
    constexpr std::uint64_t kMostBits = 64;
    const bool isGray = directory.number(tiff_tag::kSamplesPerPixel).value_or(1) < 3;
    const std::uint64_t photometric = directory.number(tiff_tag::kPhotometric).value_or(isGray ? 1 : 2);
    ImageFacts facts;
    facts.format = "TIFF";
    facts.width = static_cast<std::int64_t>(directory.number(tiff_tag::kImageWidth).value_or(0));
    facts.height = static_cast<std::int64_t>(directory.number(tiff_tag::kImageLength).value_or(0));
    facts.model = modelOf(photometric);
    const std::uint64_t bits = photometric == kPalette ? 8 : directory.number(tiff_tag::kBitsPerSample).value_or(1);
    if (bits >= 1 && bits <= kMostBits)
        facts.bitDepth = static_cast<int>(bits);
    facts.hasAlpha = hasAlpha(directory);
    facts.dpi = directory.dpi();
    facts.icc = directory.bytes(tiff_tag::kIccProfile, kLargestProfile);
    return facts;
}

} // namespace

std::optional<ImageFacts> readTiffFacts(ByteSource &source)
{
    const auto directory = TiffDirectory::first(source);
    if (!directory || directory->isLikeCameraRaw())
        return std::nullopt;
    return factsOf(*directory);
}

std::optional<ImageFacts> readAnyTiffFacts(ByteSource &source)
{
    const auto directory = TiffDirectory::first(source);
    return directory ? std::optional(factsOf(*directory)) : std::nullopt;
}

} // namespace ostrelle
