#include "media_helper/Exif.h"

#include "media_helper/ByteFields.h"

#include <cstddef>

namespace ostrelle {
namespace {

using namespace std::literals;

constexpr std::uint32_t kOrientationTag = 0x0112;
constexpr std::uint32_t kXResolutionTag = 0x011a;
constexpr std::uint32_t kResolutionUnitTag = 0x0128;
constexpr std::uint32_t kUnitCentimetre = 3;
constexpr double kCentimetresPerInch = 2.54;

/// The fields of a TIFF structure, in its own byte order; nothing beyond its end.
class TiffFields
{
public:
    explicit TiffFields(ByteSpan bytes)
        : m_bytes(bytes)
        , m_isLittle(asText(bytes).starts_with("II"sv))
    {
    }

    std::optional<std::uint32_t> number(std::size_t offset, std::size_t size) const
    {
        if (offset > m_bytes.size() || size > m_bytes.size() - offset)
            return std::nullopt;
        const ByteSpan bytes = m_bytes.subspan(offset, size);
        return static_cast<std::uint32_t>(m_isLittle ? littleEndian(bytes) : bigEndian(bytes));
    }

    std::optional<double> rational(std::size_t offset) const
    {
        const auto over = number(offset, 4);
        const auto under = number(offset + 4, 4);
        if (!over || under.value_or(0) == 0)
            return std::nullopt;
        return double(*over) / double(*under);
    }

private:
    ByteSpan m_bytes;
    bool m_isLittle;
};

} // namespace

ExifFacts exifFacts(std::span<const std::uint8_t> exif)
{
    constexpr auto kMarker = "Exif\0\0"sv;
    if (asText(exif).starts_with(kMarker))
        exif = exif.subspan(kMarker.size());
    const TiffFields fields(exif);
    const auto directory = fields.number(4, 4);
    ExifFacts facts;
    if (fields.number(2, 2) != 42U || !directory)
        return facts;
    std::uint32_t unit = 0;
    const std::uint32_t count = fields.number(*directory, 2).value_or(0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = std::size_t(*directory) + 2 + 12 * std::size_t(i);
        const auto tag = fields.number(entry, 2);
        const std::uint32_t value = fields.number(entry + 8, 2).value_or(0);
        if (tag == kOrientationTag && value >= 1 && value <= 8)
            facts.orientation = static_cast<int>(value);
        else if (tag == kResolutionUnitTag)
            unit = value;
        else if (tag == kXResolutionTag)
            facts.dpi = fields.rational(fields.number(entry + 8, 4).value_or(0));
    }
    if (facts.dpi && unit == kUnitCentimetre)
        *facts.dpi *= kCentimetresPerInch;
    else if (unit == 1)
        facts.dpi.reset();
    return facts;
}

} // namespace ostrelle
