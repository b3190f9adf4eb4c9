#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace ostrelle {

class ByteSource;

/// What the channels of a picture mean, by the name that is shown where there is no profile.
namespace color_model {
inline constexpr std::string_view kRgb = "RGB";
inline constexpr std::string_view kGray = "Gray";
inline constexpr std::string_view kCmyk = "CMYK";
inline constexpr std::string_view kLab = "Lab";
} // namespace color_model

/// What a file's headers tell of its first picture.
struct ImageFacts
{
    std::string_view format; ///< as it is shown, "JPEG"
    std::int64_t width = 0;  ///< pixels as they are stored, not turned upright
    std::int64_t height = 0;
    std::string_view model;        ///< one of color_model; empty when it is not told
    std::vector<std::uint8_t> icc; ///< the embedded profile; empty when there is none
    std::optional<int> bitDepth;   ///< of each sample of a channel, once colours are looked up in their table
    std::optional<double> dpi;     ///< horizontal, dots per inch
    bool hasAlpha = false;
};

/// Each reads the headers of one kind of file and decodes nothing. Nothing when they are not what they should be, or of
/// a kind within the kind that another library knows.
using ReadImageFacts = std::optional<ImageFacts>(ByteSource &source);

// The light ones.
ReadImageFacts readJpegFacts;
ReadImageFacts readPngFacts;
ReadImageFacts readGifFacts;
ReadImageFacts readWebPFacts;
ReadImageFacts readTiffFacts; ///< not of what may be a camera's raw file
ReadImageFacts readAnyTiffFacts;
ReadImageFacts readBmpFacts;
ReadImageFacts readIcoFacts;
ReadImageFacts readPsdFacts;
ReadImageFacts readPnmFacts;
ReadImageFacts readHdrFacts;
ReadImageFacts readExrFacts;
ReadImageFacts readTgaFacts;
ReadImageFacts readJpeg2000Facts;

// The heavy ones.
ReadImageFacts readHeifFacts;
ReadImageFacts readJpegXlFacts;
ReadImageFacts readSvgFacts;
ReadImageFacts readRawFacts;
ReadImageFacts readRawOrTiffFacts; ///< what readTiffFacts() declines

} // namespace ostrelle
