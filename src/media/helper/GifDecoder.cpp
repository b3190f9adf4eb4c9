#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/GifReader.h"
#include "media_helper/PictureBuilder.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ostrelle {
namespace {

/// GIF89a, appendix E: the order in which the rows of an interlaced picture are stored.
struct InterlacePass
{
    int first;
    int step;
};
constexpr std::array kInterlacePasses{InterlacePass{0, 8}, InterlacePass{4, 8}, InterlacePass{2, 4},
                                      InterlacePass{1, 2}};

/// The colour numbers of the first picture, in the order of its rows; as many rows as the file has.
std::vector<GifPixelType> readPicture(GifFileType *gif, bool &isWhole)
{
    const GifImageDesc &place = gif->Image;
    const std::size_t width = static_cast<std::size_t>(place.Width);
    std::vector<GifPixelType> pixels(width * static_cast<std::size_t>(place.Height));
    isWhole = true;
    const auto readRow = [&](int row) {
        isWhole = isWhole &&
                  DGifGetLine(gif, pixels.data() + static_cast<std::size_t>(row) * width, place.Width) != GIF_ERROR;
    };
    if (!place.Interlace) {
        for (int row = 0; row < place.Height; ++row)
            readRow(row);
        return pixels;
    }
    for (const InterlacePass &pass : kInterlacePasses) {
        for (int row = pass.first; row < place.Height; row += pass.step)
            readRow(row);
    }
    return pixels;
}

class Canvas
{
public:
    Canvas(const GifFileType &gif, int transparent, const std::vector<GifPixelType> &pixels)
        : m_gif(gif)
        , m_colours(gif.Image.ColorMap ? gif.Image.ColorMap : gif.SColorMap)
        , m_transparent(transparent)
        , m_pixels(pixels)
        , m_row(4 * static_cast<std::size_t>(gif.SWidth))
    {
    }

    const std::uint8_t *row(int y)
    {
        std::fill(m_row.begin(), m_row.end(), std::uint8_t(0));
        const GifImageDesc &place = m_gif.Image;
        if (y < place.Top || y >= place.Top + place.Height)
            return m_row.data();
        const int end = std::min(m_gif.SWidth, place.Left + place.Width);
        for (int x = place.Left; x < end; ++x) {
            const std::size_t pixel = static_cast<std::size_t>(y - place.Top) * static_cast<std::size_t>(place.Width) +
                                      static_cast<std::size_t>(x - place.Left);
            const int index = m_pixels[pixel];
            if (index == m_transparent || index >= m_colours->ColorCount)
                continue;
            const GifColorType &colour = m_colours->Colors[index];
            std::uint8_t *out = m_row.data() + 4 * static_cast<std::size_t>(x);
            out[0] = colour.Red;
            out[1] = colour.Green;
            out[2] = colour.Blue;
            out[3] = 0xff;
        }
        return m_row.data();
    }

    bool hasColours() const { return m_colours != nullptr; }

private:
    const GifFileType &m_gif;
    const ColorMapObject *m_colours;
    const int m_transparent;
    const std::vector<GifPixelType> &m_pixels;
    std::vector<std::uint8_t> m_row;
};

} // namespace

HelperStatus decodeGif(ByteSource &source, PictureBuilder &builder)
{
    ByteReader bytes(source);
    const Gif gif = openedGif(bytes);
    const std::optional<GifPrelude> prelude = gif ? findGifPicture(gif.get()) : std::nullopt;
    if (!prelude)
        return HelperStatus::Broken;
    const GifImageDesc &place = gif->Image;
    PictureFacts facts;
    facts.full = facts.decoded = {gif->SWidth, gif->SHeight};
    facts.layout = PixelLayout::Rgba;
    facts.icc = prelude->icc;
    if (!builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    if (std::int64_t(place.Width) * place.Height > kWholePicturePixels)
        return HelperStatus::TooLarge;
    bool isWhole = false;
    const std::vector<GifPixelType> pixels = readPicture(gif.get(), isWhole);
    Canvas canvas(*gif, prelude->transparent, pixels);
    if (!isWhole || !canvas.hasColours())
        return HelperStatus::Broken;
    for (int y = 0; y < gif->SHeight; ++y)
        builder.addRow(canvas.row(y));
    return HelperStatus::Done;
}

} // namespace ostrelle
