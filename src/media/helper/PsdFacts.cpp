#include "media_helper/ByteFields.h"
#include "media_helper/ImageFacts.h"

#include <array>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::size_t kHeader = 26;
constexpr std::size_t kResourceHeader = 8;
constexpr std::size_t kLargestProfile = 4U << 20U;
constexpr int kMostResources = 1000;
constexpr std::uint64_t kResolutionResource = 1005;
constexpr std::uint64_t kProfileResource = 1039;

struct Mode
{
    std::string_view model;
    std::uint64_t channels;
};

/// Adobe Photoshop File Formats Specification, file header: the color mode.
Mode modeOf(std::uint64_t number)
{
    switch (number) {
    case 0: // bitmap
    case 1: // gray
    case 8: // duotone
        return {color_model::kGray, 1};
    case 2: // indexed
        return {color_model::kRgb, 1};
    case 4:
        return {color_model::kCmyk, 4};
    case 9:
        return {color_model::kLab, 3};
    case 3:
        return {color_model::kRgb, 3};
    default: // multichannel: as many inks as there are
        return {{}, 56};
    }
}

std::uint64_t lengthAt(ByteSource &source, std::uint64_t offset)
{
    std::array<std::uint8_t, 4> bytes{};
    return readWhole(source, offset, bytes) ? bigEndian(bytes) : 0;
}

void takeResource(ByteSource &source, std::uint64_t id, std::uint64_t offset, std::uint64_t size, ImageFacts &facts)
{
    std::array<std::uint8_t, 4> resolution{};
    if (id == kResolutionResource && size >= resolution.size() && readWhole(source, offset, resolution)) {
        // Pixels per inch with 16 bits of fraction, whatever unit it is shown in.
        facts.dpi = static_cast<double>(bigEndian(resolution)) / 65536;
    } else if (id == kProfileResource && size <= kLargestProfile) {
        facts.icc.resize(static_cast<std::size_t>(size));
        facts.icc.resize(source.readAt(offset, facts.icc));
    }
}

/// The image resources stand behind the color table.
void readResources(ByteSource &source, ImageFacts &facts)
{
    const std::uint64_t begin = kHeader + 4 + lengthAt(source, kHeader);
    const std::uint64_t end = begin + 4 + lengthAt(source, begin);
    std::uint64_t offset = begin + 4;
    std::array<std::uint8_t, kResourceHeader> header{};
    for (int resources = 0; resources < kMostResources && offset < end; ++resources) {
        if (!readWhole(source, offset, header) || asText(ByteSpan(header).first(4)) != "8BIM"sv)
            return;
        const std::uint64_t id = bigEndian(ByteSpan(header).subspan(4, 2));
        // A name with its length before it, filled up to an even size.
        offset += 6 + (header[6] + 2U) / 2 * 2;
        const std::uint64_t size = lengthAt(source, offset);
        offset += 4;
        takeResource(source, id, offset, size, facts);
        offset += size + size % 2;
    }
}

} // namespace

std::optional<ImageFacts> readPsdFacts(ByteSource &source)
{
    std::array<std::uint8_t, kHeader> header{};
    if (!readWhole(source, 0, header))
        return std::nullopt;
    const ByteSpan bytes(header);
    const Mode mode = modeOf(bigEndian(bytes.subspan(24, 2)));
    ImageFacts facts;
    facts.format = "PSD";
    facts.height = static_cast<std::int64_t>(bigEndian(bytes.subspan(14, 4)));
    facts.width = static_cast<std::int64_t>(bigEndian(bytes.subspan(18, 4)));
    facts.model = mode.model;
    facts.bitDepth = static_cast<int>(bigEndian(bytes.subspan(22, 2)));
    facts.hasAlpha = bigEndian(bytes.subspan(12, 2)) > mode.channels;
    readResources(source, facts);
    return facts;
}

} // namespace ostrelle
