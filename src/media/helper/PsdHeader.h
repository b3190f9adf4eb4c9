#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace ostrelle {

class ByteSource;

/// What stands before the merged picture of a Photoshop document, after the Adobe Photoshop File Formats Specification.
struct PsdHeader
{
    enum class Mode { Gray = 1, Indexed = 2, Rgb = 3, Cmyk = 4, Duotone = 8 };
    enum class Packing { None = 0, RunLengths = 1 };
    using Palette = std::array<std::uint8_t, 768>; ///< all reds, all greens, all blues

    bool isLarge = false; ///< a "large document", with longer fields
    int channels = 0;
    int width = 0;
    int height = 0;
    int bytesPerValue = 1;
    Mode mode = Mode::Rgb;
    Packing packing = Packing::None;
    Palette palette{};
    std::vector<std::uint8_t> icc;
    /// The channel behind the colours says how much of the picture is there. Else it is only a kept selection.
    bool isTransparent = false;
    std::uint64_t pixels = 0; ///< where the merged picture begins, after its kind of packing
};

/// Nothing when it is cut off or of a kind that is not told here: one bit or floating point, packed as ZIP, spot
/// colours.
std::optional<PsdHeader> readPsdHeader(ByteSource &source);

} // namespace ostrelle
