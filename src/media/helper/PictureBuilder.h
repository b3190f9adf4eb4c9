#pragma once

#include "media_helper/Raster.h"
#include "media_helper/RowShrinker.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ostrelle {

/// What is to be made of a picture.
struct PictureWish
{
    int side = 0; ///< pixels of the longer side; 0: as large as it is
    bool isSquare = false;
    std::int64_t pixelLimit = 0; ///< no picture of more pixels is begun
};

/// What a decoder says before it delivers rows.
struct PictureFacts
{
    PixelSize full;    ///< as stored, before orientation
    PixelSize decoded; ///< of the rows that follow: what the decoder has already shrunk `full` to
    PixelLayout layout = PixelLayout::Rgb;
    int orientation = 1;           ///< Exif's, 1 to 8
    std::vector<std::uint8_t> icc; ///< the embedded profile; empty: sRGB, or as good as
};

/// Decoded pictures of more than this are refused where a decoder needs the whole picture in memory.
inline constexpr std::int64_t kWholePicturePixels = 100'000'000;

/// Turns the rows of a decoder into the picture that was wished for: shrunk, in sRGB, upright.
class PictureBuilder
{
public:
    explicit PictureBuilder(const PictureWish &wish)
        : m_wish(wish)
    {
    }

    /// By how much `full` may be shrunk while it is decoded, 0 to 1. A decoder that can only do steps takes the next
    /// larger one.
    double shrinkScale(PixelSize full) const;
    /// For pictures made of outlines, which have no pixels: also above 1.
    double drawScale(PixelSize full) const;

    /// For a picture inside a file that says how it is to be held: used where the picture itself says nothing.
    void assumeOrientation(int orientation) { m_assumedOrientation = orientation; }

    /// False when it is too large, or has no pixels; then no row may follow.
    bool begin(PictureFacts facts);
    void addRow(const std::uint8_t *row) { m_shrinker->add(row); }
    /// True when begin() refused the size.
    bool isTooLarge() const { return m_isTooLarge; }

    /// The size of the picture in the file, upright.
    PixelSize sourceSize() const;
    /// Not premultiplied RGBA. After the last row.
    Raster take();

private:
    PixelArea wantedArea(PixelSize decoded) const;
    PixelSize targetSize(PixelSize area) const;

    const PictureWish m_wish;
    PictureFacts m_facts;
    int m_assumedOrientation = 1;
    bool m_isTooLarge = false;
    std::optional<RowShrinker> m_shrinker;
};

/// `picture` shrunk so that its longer side is `side`; unchanged when it is not longer.
Raster shrunk(const Raster &picture, int side);

} // namespace ostrelle
