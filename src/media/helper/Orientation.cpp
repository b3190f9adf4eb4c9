#include "media_helper/Orientation.h"

#include <cstddef>
#include <cstring>
#include <optional>

namespace ostrelle {
namespace {

constexpr std::uint32_t kOrientationTag = 0x0112;

/// The fields of a TIFF structure, in its own byte order; nothing beyond its end.
class TiffFields
{
public:
    explicit TiffFields(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
        , m_isLittle(bytes.size() > 1 && bytes[0] == 'I' && bytes[1] == 'I')
    {
    }

    std::optional<std::uint32_t> number(std::size_t offset, std::size_t size) const
    {
        if (offset > m_bytes.size() || size > m_bytes.size() - offset)
            return std::nullopt;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value = value << 8 | m_bytes[offset + (m_isLittle ? size - 1 - i : i)];
        return value;
    }

private:
    std::span<const std::uint8_t> m_bytes;
    bool m_isLittle;
};

} // namespace

int exifOrientation(std::span<const std::uint8_t> exif)
{
    static constexpr std::uint8_t kMarker[] = {'E', 'x', 'i', 'f', 0, 0};
    if (exif.size() > sizeof kMarker && std::memcmp(exif.data(), kMarker, sizeof kMarker) == 0)
        exif = exif.subspan(sizeof kMarker);
    const TiffFields fields(exif);
    const auto directory = fields.number(4, 4);
    if (fields.number(2, 2) != 42U || !directory)
        return 1;
    const std::uint32_t count = fields.number(*directory, 2).value_or(0);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t entry = std::size_t(*directory) + 2 + 12 * std::size_t(i);
        if (fields.number(entry, 2) != kOrientationTag)
            continue;
        const std::uint32_t value = fields.number(entry + 8, 2).value_or(1);
        return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
    }
    return 1;
}

Raster upright(Raster picture, int orientation)
{
    if (orientation <= 1 || orientation > 8)
        return picture;
    const int width = picture.size.width;
    const int height = picture.size.height;
    Raster result;
    result.layout = picture.layout;
    result.size = swapsSides(orientation) ? PixelSize{height, width} : picture.size;
    result.bytes.resize(picture.bytes.size());
    const bool fromRight = orientation == 2 || orientation == 3 || orientation == 7 || orientation == 8;
    const bool fromBottom = orientation == 3 || orientation == 4 || orientation == 6 || orientation == 7;
    std::uint8_t *out = result.bytes.data();
    for (int y = 0; y < result.size.height; ++y) {
        for (int x = 0; x < result.size.width; ++x, out += 4) {
            int sourceX = swapsSides(orientation) ? y : x;
            int sourceY = swapsSides(orientation) ? x : y;
            if (fromRight)
                sourceX = width - 1 - sourceX;
            if (fromBottom)
                sourceY = height - 1 - sourceY;
            const std::size_t pixel =
                static_cast<std::size_t>(sourceY) * static_cast<std::size_t>(width) + static_cast<std::size_t>(sourceX);
            std::memcpy(out, picture.bytes.data() + 4 * pixel, 4);
        }
    }
    return result;
}

} // namespace ostrelle
