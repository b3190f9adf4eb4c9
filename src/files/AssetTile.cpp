#include "files/AssetTile.h"

#include "files/AssetGridLayout.h"
#include "files/AssetThumbnails.h"
#include "files/PlayingRing.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/CentredImage.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/PlayBadge.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kSquareSide = 62;
constexpr double kSquareRadius = 10;
constexpr double kSymbolSize = 22;
constexpr double kHoverScale = 1.04;
/// Of the ring of the focus, the badge and what the pointer enlarges.
constexpr double kOverhang = 8;
constexpr double kRing = 1.5;
constexpr double kPlayDiameter = 24;
constexpr double kRemoveDiameter = 15;
constexpr double kRemoveOffset = 5;
constexpr double kRemoveSymbol = 7.5;
constexpr double kRemoveGround = 0.62;
constexpr double kRemoveHiddenScale = 0.6;
constexpr double kPressedOpacity = 0.75;
constexpr double kMissingOpacity = 0.5;
constexpr double kNameGap = 7;
constexpr double kNameWidth = 80;
constexpr double kNameHeight = 13;
constexpr double kFocusWidth = 2;
constexpr double kFocusGap = 2;

void scaleAbout(QPainter &painter, const QPointF &centre, double scale)
{
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-centre);
}

QRectF centred(const QRectF &rect, double side)
{
    return {rect.center().x() - side / 2, rect.center().y() - side / 2, side, side};
}

QRectF removeBadge()
{
    const QRectF square = AssetTile::square();
    return {square.x() + square.width() - kRemoveDiameter + kRemoveOffset, square.y() - kRemoveOffset, kRemoveDiameter,
            kRemoveDiameter};
}

} // namespace

QRectF AssetTile::paintedRect(const QPointF &place)
{
    return QRectF(place, QSizeF(AssetGridLayout::kTileSide, AssetGridLayout::kTileSide))
        .adjusted(-kOverhang, -kOverhang, kOverhang, kOverhang);
}

QRectF AssetTile::square()
{
    return {(AssetGridLayout::kTileSide - kSquareSide) / 2, 0, kSquareSide, kSquareSide};
}

QRectF AssetTile::playBadgeRect()
{
    return centred(square(), kPlayDiameter);
}

QRectF AssetTile::removeBadgeRect(bool reducesMotion)
{
    const double scale = reducesMotion ? 1 : kHoverScale;
    const QPointF centre = square().center();
    return QTransform::fromTranslate(centre.x(), centre.y())
        .scale(scale, scale)
        .translate(-centre.x(), -centre.y())
        .mapRect(removeBadge());
}

double AssetTile::squareScale(bool reducesMotion) const
{
    return reducesMotion ? 1 : 1 + (kHoverScale - 1) * hover;
}

void AssetTile::paint(QPainter &painter, const ControlContext &context, TileCache &cache) const
{
    const bool reducesMotion = context.appearance.reducesMotion();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.save();
    scaleAbout(painter, square().center(), squareScale(reducesMotion));
    paintSquare(painter, context, cache);
    paintRing(painter, context);
    PlayBadge::paint(painter, playBadgeRect().translated(playShift, 0),
                     {.isPlaying = isPlaying,
                      .presence = playBadge * playOpacity,
                      .press = isPlayPressed ? 1.0 : 0.0,
                      .scale = reducesMotion ? 1 : PlayBadge::scaleOf(playBadge),
                      .progress = playProgress});
    paintRemoveBadge(painter, reducesMotion);
    painter.restore();
    paintName(painter, context, cache);
    painter.restore();
}

void AssetTile::paintSquare(QPainter &painter, const ControlContext &context, TileCache &cache) const
{
    const Theme::Palette &palette = context.appearance.palette();
    cache.plates.paint(painter, square(), kSquareRadius, isSelected ? palette.accentSwitchedOn : palette.tileTint);
    if (showsFocus) {
        const double reach = kFocusGap + kFocusWidth / 2;
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette.focusRing, kFocusWidth));
        painter.drawRoundedRect(square().adjusted(-reach, -reach, reach, reach), kSquareRadius + reach,
                                kSquareRadius + reach);
    }
    painter.save();
    painter.setOpacity(painter.opacity() * (isMissing ? kMissingOpacity : 1));
    if (!picture.isNull())
        paintPicture(painter);
    else if (icon && !icon->isNull())
        paintCentred(painter, square(), *icon);
    else if (icon)
        paintGlyph(painter, symbol, square(), kSymbolSize, GlyphWeight::Regular, palette.text2);
    painter.restore();
}

void AssetTile::paintPicture(QPainter &painter) const
{
    const QRectF place = centred(square(), AssetThumbnails::kSide);
    const bool fitsPixels =
        isOnPixel(painter, place.topLeft()) && painter.deviceTransform().m11() * place.width() == picture.width();
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform, !fitsPixels);
    painter.drawImage(place, picture);
    painter.restore();
}

void AssetTile::paintRing(QPainter &painter, const ControlContext &context) const
{
    const PlayingRing ring{.width = kRing, .radius = kSquareRadius, .presence = playingRing};
    ring.paint(painter, square(), context.appearance);
}

void AssetTile::paintRemoveBadge(QPainter &painter, bool reducesMotion) const
{
    if (hover <= 0)
        return;
    const QRectF badge = removeBadge();
    painter.save();
    painter.setOpacity(painter.opacity() * std::min(hover, 1.0) * (isRemovePressed ? kPressedOpacity : 1));
    scaleAbout(painter, badge.center(), reducesMotion ? 1 : kRemoveHiddenScale + (1 - kRemoveHiddenScale) * hover);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(Qt::black, kRemoveGround));
    painter.drawEllipse(badge);
    paintGlyph(painter, u"xmark", badge, kRemoveSymbol, GlyphWeight::Bold, Qt::white);
    painter.restore();
}

void AssetTile::paintName(QPainter &painter, const ControlContext &context, TileCache &cache) const
{
    const Theme::Palette &palette = context.appearance.palette();
    const QRectF line((AssetGridLayout::kTileSide - kNameWidth) / 2, kSquareSide + kNameGap, kNameWidth, kNameHeight);
    const QColor &resting = isMissing ? palette.text3 : palette.text2;
    const QColor &active = isMissing ? palette.text2 : palette.text1;
    painter.setPen(mixed(resting, active, isSelected ? 1 : hover));
    cache.names.paint(painter, line, name);
}

} // namespace ostrelle
