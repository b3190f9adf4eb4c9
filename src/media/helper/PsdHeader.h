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
    enum class Mode { Bitmap = 0, Gray = 1, Indexed = 2, Rgb = 3, Cmyk = 4, Multichannel = 7, Duotone = 8, Lab = 9 };
    enum class Packing { None = 0, RunLengths = 1, Zip = 2, ZipWithPrediction = 3 };
    using Palette = std::array<std::uint8_t, 768>; ///< all reds, all greens, all blues

    bool isLarge = false; ///< a "large document", with longer fields
    int channels = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    int bits = 8; ///< of each value
    Mode mode = Mode::Rgb;
    Palette palette{};
    std::optional<double> dpi;
    std::vector<std::uint8_t> icc;
    /// The channel behind the colours says how much of the picture is there. Else it is only a kept selection.
    bool isTransparent = false;
    bool isCut = false; ///< the file ends before the picture, of which the rest says nothing then
    Packing packing = Packing::None;
    std::uint64_t pixels = 0; ///< where the merged picture begins, after its kind of packing
};

/// Nothing when it is cut off before its dimensions, or none.
std::optional<PsdHeader> readPsdHeader(ByteSource &source);

} // namespace ostrelle
