#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ostrelle {

/// Pixels of four bytes (red, green, blue, alpha; not premultiplied, sRGB), rows from the top without gaps.
struct PngPixels
{
    int width = 0;
    int height = 0;
    const std::uint8_t *rgba = nullptr;
};

enum class PngAlpha { Keep, DropWhenOpaque };

struct PngOptions
{
    PngAlpha alpha = PngAlpha::Keep;
    int compression = 6; ///< zlib's, 0 to 9
    std::size_t byteLimit = SIZE_MAX;
    std::vector<std::pair<std::string, std::string>> texts; ///< tEXt chunks before the pixels, key and value in Latin-1
};

/// The picture as PNG of eight bits a channel; nothing when it would grow beyond the limit. Any thread.
std::optional<std::vector<std::uint8_t>> encodePng(const PngPixels &pixels, const PngOptions &options);

} // namespace ostrelle
