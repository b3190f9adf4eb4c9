#include "media_helper/ByteFields.h"
#include "media_helper/Exif.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/Mp4Boxes.h"

#include <algorithm>
#include <array>
#include <cmath>

// ISO/IEC 15444-1, annexes A and I. The library for it tells resolutions and alpha only with the pixels, and nothing of
// a file that ends early.

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::uint64_t kLargestProfile = 4U << 20U;
constexpr std::uint64_t kLargestExif = 4U << 20U;
constexpr double kMetresPerInch = 0.0254;
constexpr int kMostBoxes = 100;
/// Boxes with an identifier of their own; this one holds Exif.
constexpr auto kExifIdentifier = "JpgTiffExif->JP2"sv;

int depthOf(std::uint64_t field)
{
    constexpr std::uint64_t kBits = 0x7f; // the highest bit says that values have a sign
    return static_cast<int>((field & kBits) + 1);
}

std::string_view modelOf(std::uint64_t enumerated)
{
    switch (enumerated) {
    case 12:
        return color_model::kCmyk;
    case 14:
        return color_model::kLab;
    case 17:
        return color_model::kGray;
    default:
        return color_model::kRgb;
    }
}

std::string_view modelOfProfile(ByteSpan icc)
{
    constexpr std::size_t kSpaceAt = 16;
    const std::string_view space = icc.size() >= kSpaceAt + 4 ? asText(icc.subspan(kSpaceAt, 4)) : ""sv;
    return space == "GRAY"sv ? color_model::kGray : space == "CMYK"sv ? color_model::kCmyk : color_model::kRgb;
}

std::vector<std::uint8_t> contentOf(ByteSource &source, const Mp4Box &box, std::uint64_t limit)
{
    const std::uint64_t size = box.end - box.begin;
    std::vector<std::uint8_t> bytes(size <= limit ? static_cast<std::size_t>(size) : 0);
    bytes.resize(source.readAt(box.begin, bytes));
    return bytes;
}

/// The size marker at the begin of the pixels' own stream.
std::optional<ImageFacts> streamFacts(ByteSource &source, std::uint64_t begin)
{
    std::array<std::uint8_t, 43> bytes{};
    if (!readWhole(source, begin, bytes) || asText(bytes).substr(0, 4) != "\xff\x4f\xff\x51"sv)
        return std::nullopt;
    const auto field = [&bytes](std::size_t at) {
        return static_cast<std::int64_t>(bigEndian(ByteSpan(bytes).subspan(at, 4)));
    };
    const std::uint64_t components = bigEndian(ByteSpan(bytes).subspan(40, 2));
    ImageFacts facts;
    facts.format = "JP2";
    facts.width = field(8) - field(16);
    facts.height = field(12) - field(20);
    facts.model = components <= 2 ? color_model::kGray : color_model::kRgb;
    facts.bitDepth = depthOf(bytes[42]);
    facts.hasAlpha = components == 2 || components == 4;
    return facts;
}

/// What the boxes of the header tell, one after the other.
class HeaderBoxes
{
public:
    HeaderBoxes(ByteSource &source, ImageFacts &facts)
        : m_source(source)
        , m_facts(facts)
    {
    }

    void take(const Mp4Box &box)
    {
        const std::vector<std::uint8_t> bytes = contentOf(m_source, box, kLargestProfile);
        const ByteSpan fields(bytes);
        if (box.type == mp4Type("ihdr") && fields.size() >= 14)
            takeSize(fields);
        else if (box.type == mp4Type("bpcc") && !fields.empty())
            m_facts.bitDepth = depthOf(fields[0]);
        else if (box.type == mp4Type("pclr") && fields.size() >= 4)
            takePalette(fields);
        else if (box.type == mp4Type("colr") && fields.size() >= 3)
            takeColors(fields);
        else if (box.type == mp4Type("cdef"))
            takeChannels(fields);
        else if (box.type == mp4Type("res "))
            takeResolution(box);
    }

    /// After all boxes.
    void finish()
    {
        if (m_facts.model.empty())
            m_facts.model = m_components <= 2 ? color_model::kGray : color_model::kRgb;
        const std::uint64_t colors = m_facts.model == color_model::kGray   ? 1
                                     : m_facts.model == color_model::kCmyk ? 4
                                                                           : 3;
        // Without a word about channels, one more than the colors need is alpha.
        if (!m_hasChannels)
            m_facts.hasAlpha = m_components == colors + 1;
    }

private:
    void takeSize(ByteSpan fields)
    {
        constexpr std::uint8_t kDiffers = 255;
        m_facts.height = static_cast<std::int64_t>(bigEndian(fields.first(4)));
        m_facts.width = static_cast<std::int64_t>(bigEndian(fields.subspan(4, 4)));
        m_components = bigEndian(fields.subspan(8, 2));
        if (fields[10] != kDiffers)
            m_facts.bitDepth = depthOf(fields[10]);
    }

    void takePalette(ByteSpan fields)
    {
        m_components = fields[2];
        m_facts.bitDepth = depthOf(fields[3]);
    }

    /// The first that is understood counts.
    void takeColors(ByteSpan fields)
    {
        const bool isEnumerated = fields[0] == 1;
        if (!m_facts.model.empty() || (!isEnumerated && fields[0] > 3))
            return;
        const ByteSpan content = fields.subspan(3);
        if (isEnumerated) {
            m_facts.model = modelOf(bigEndian(content.first(std::min<std::size_t>(content.size(), 4))));
            return;
        }
        m_facts.icc.assign(content.begin(), content.end());
        m_facts.model = modelOfProfile(content);
    }

    void takeChannels(ByteSpan fields)
    {
        constexpr std::size_t kChannel = 6;
        m_hasChannels = true;
        for (std::size_t at = 2; at + kChannel <= fields.size(); at += kChannel) {
            // Opacity, plain or multiplied into the colors.
            const std::uint64_t kind = bigEndian(fields.subspan(at + 2, 2));
            m_facts.hasAlpha = m_facts.hasAlpha || kind == 1 || kind == 2;
        }
    }

    /// As it was captured, else as it should be shown.
    void takeResolution(const Mp4Box &box)
    {
        for (const std::string_view type : {"resd"sv, "resc"sv}) {
            std::array<std::uint8_t, 10> bytes{};
            const auto resolution = Mp4Walk(m_source, box).next(type);
            if (!resolution || !readWhole(m_source, resolution->begin, bytes))
                continue;
            const auto under = static_cast<double>(bigEndian(ByteSpan(bytes).subspan(6, 2)));
            const auto over = static_cast<double>(bigEndian(ByteSpan(bytes).subspan(4, 2)));
            const int exponent = (static_cast<std::uint8_t>(bytes[9]) ^ 0x80) - 0x80; // a signed byte
            if (under > 0)
                m_facts.dpi = over / under * std::pow(10.0, exponent) * kMetresPerInch;
        }
    }

    ByteSource &m_source;
    ImageFacts &m_facts;
    std::uint64_t m_components = 0;
    bool m_hasChannels = false;
};

std::optional<double> exifDpi(ByteSource &source, const Mp4Box &box)
{
    const std::vector<std::uint8_t> bytes = contentOf(source, box, kLargestExif);
    if (!asText(bytes).starts_with(kExifIdentifier))
        return std::nullopt;
    return exifFacts(ByteSpan(bytes).subspan(kExifIdentifier.size())).dpi;
}

} // namespace

std::optional<ImageFacts> readJpeg2000Facts(ByteSource &source)
{
    if (auto facts = streamFacts(source, 0))
        return facts;
    ImageFacts facts;
    facts.format = "JP2";
    std::optional<double> exif;
    Mp4Walk walk(source, 0, source.size());
    for (int boxes = 0; boxes < kMostBoxes; ++boxes) {
        const auto box = walk.next();
        if (!box)
            break;
        if (box->type == mp4Type("uuid") && !exif)
            exif = exifDpi(source, *box);
        if (box->type == mp4Type("jp2c") && facts.width == 0)
            return streamFacts(source, box->begin);
        if (box->type != mp4Type("jp2h") || facts.width > 0)
            continue;
        HeaderBoxes header(source, facts);
        Mp4Walk inside(source, *box);
        for (auto each = inside.next(); each; each = inside.next())
            header.take(*each);
        header.finish();
    }
    if (!facts.dpi)
        facts.dpi = exif;
    return facts.width > 0 ? std::optional(facts) : std::nullopt;
}

} // namespace ostrelle
