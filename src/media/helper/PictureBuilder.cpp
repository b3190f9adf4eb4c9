#include "media_helper/PictureBuilder.h"

#include "media_helper/Colour.h"
#include "media_helper/Orientation.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kLongestSide = 65535;
/// What is drawn to fill a square may be this much longer than the square.
constexpr int kLongestDrawnRatio = 16;

PixelSize fitted(PixelSize size, int side)
{
    const int longer = std::max(size.width, size.height);
    if (side == 0 || longer <= side)
        return size;
    const auto scaled = [&](int length) {
        return std::max(1, static_cast<int>((std::int64_t(length) * side + longer / 2) / longer));
    };
    return {scaled(size.width), scaled(size.height)};
}

} // namespace

double PictureBuilder::shrinkScale(PixelSize full) const
{
    return std::min(1.0, drawScale(full));
}

double PictureBuilder::drawScale(PixelSize full) const
{
    if (m_wish.side == 0 || full.width <= 0 || full.height <= 0)
        return 1;
    const double longer = std::max(full.width, full.height);
    const double shorter = std::min(full.width, full.height);
    if (!m_wish.isSquare)
        return m_wish.side / longer;
    return std::min(m_wish.side / shorter, m_wish.side * kLongestDrawnRatio / longer);
}

bool PictureBuilder::begin(PictureFacts facts)
{
    const auto isPossible = [](PixelSize size) {
        return size.width > 0 && size.height > 0 && size.width <= kLongestSide && size.height <= kLongestSide;
    };
    const PixelSize full = facts.full;
    m_isTooLarge = full.width > kLongestSide || full.height > kLongestSide ||
                   std::int64_t(full.width) * full.height > m_wish.pixelLimit;
    if (m_isTooLarge || !isPossible(full) || !isPossible(facts.decoded))
        return false;
    m_facts = std::move(facts);
    if (m_facts.orientation == 1)
        m_facts.orientation = m_assumedOrientation;
    const PixelArea area = wantedArea(m_facts.decoded);
    m_shrinker.emplace(area, targetSize(area.size), m_facts.layout);
    return true;
}

PixelArea PictureBuilder::wantedArea(PixelSize decoded) const
{
    if (!m_wish.isSquare)
        return {0, 0, decoded};
    const int side = std::min(decoded.width, decoded.height);
    return {(decoded.width - side) / 2, (decoded.height - side) / 2, {side, side}};
}

PixelSize PictureBuilder::targetSize(PixelSize area) const
{
    return fitted(area, m_wish.side);
}

PixelSize PictureBuilder::sourceSize() const
{
    const PixelSize full = m_facts.full;
    return swapsSides(m_facts.orientation) ? PixelSize{full.height, full.width} : full;
}

Raster PictureBuilder::take()
{
    Raster picture = m_shrinker->take();
    m_shrinker.reset();
    return upright(toSrgb(std::move(picture), m_facts.icc), m_facts.orientation);
}

Raster shrunk(const Raster &picture, int side)
{
    const PixelSize target = fitted(picture.size, side);
    if (target == picture.size)
        return picture;
    RowShrinker shrinker({0, 0, picture.size}, target, picture.layout);
    for (int row = 0; row < picture.size.height; ++row)
        shrinker.add(picture.bytes.data() + picture.stride() * static_cast<std::size_t>(row));
    return shrinker.take();
}

} // namespace ostrelle
