#include "files/RecentRow.h"

#include "files/PlayingRing.h"
#include "files/RecentWell.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/PlayBadge.h"
#include "notch/controls/RowPlate.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kRowRadius = 9;
constexpr double kRowPadding = 10;
constexpr double kRowWell = 22;
constexpr double kRowWellRadius = 6;
constexpr double kRowSpacing = 8;
constexpr double kSummaryGap = 9;
/// Of the forget button: the symbol's middle is this far from the end.
constexpr double kForgetInset = 15;
constexpr double kForgetDiameter = 22;
constexpr double kForgetSize = 9;

QRectF leadingSquare(const QRectF &plate)
{
    return {plate.x() + kRowPadding, plate.y() + (plate.height() - kRowWell) / 2, kRowWell, kRowWell};
}

} // namespace

QRectF RecentRow::playBadgeRect(const QRectF &plate)
{
    return leadingSquare(plate);
}

QRectF RecentRow::forgetRect(const QRectF &plate)
{
    const QPointF middle(plate.x() + plate.width() - kForgetInset, plate.center().y());
    return {middle.x() - kForgetDiameter / 2, middle.y() - kForgetDiameter / 2, kForgetDiameter, kForgetDiameter};
}

void RecentRow::paint(QPainter &painter, const QRectF &plate, const ControlContext &context) const
{
    const Theme::Palette &palette = context.appearance.palette();
    const bool reducesMotion = context.appearance.reducesMotion();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(palette.hoverTint, tint));
    painter.drawRoundedRect(plate, kRowRadius, kRowRadius);
    RecentWell{.symbol = symbol, .thumbnail = entry.thumbnail}.paint(painter, leadingSquare(plate), kRowWellRadius,
                                                                     context);
    paintTexts(painter, plate, context);
    if (isForgetHovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(palette.hoverTint);
        painter.drawEllipse(forgetRect(plate));
    }
    paintGlyph(painter, u"xmark", forgetRect(plate), kForgetSize, GlyphWeight::Semibold,
               isForgetHovered ? palette.text1 : palette.text3);
    PlayingRing{.radius = kRowRadius, .presence = ring}.paint(painter, plate, context.appearance);
    PlayBadge::paint(painter, playBadgeRect(plate).translated(playShift, 0),
                     {.isPlaying = entry.isPlaying,
                      .presence = playBadge * playOpacity,
                      .press = isPlayPressed ? 1.0 : 0.0,
                      .scale = reducesMotion ? 1 : PlayBadge::scaleOf(playBadge),
                      .progress = entry.progress});
}

/// Both on one line; the name gives way last.
void RecentRow::paintTexts(QPainter &painter, const QRectF &plate, const ControlContext &context) const
{
    const Theme::Palette &palette = context.appearance.palette();
    const QFont nameFont = Theme::font(FontRole::CaptionMedium);
    const QFont secondFont = Theme::font(FontRole::Micro);
    const double left = plate.x() + kRowPadding + kRowWell + kRowSpacing;
    const double room = forgetRect(plate).x() - kRowSpacing - left;
    const double second = std::min(QFontMetricsF(secondFont).horizontalAdvance(entry.secondText()), room / 2);
    const double nameRoom = room - kSummaryGap - second;
    const QString name = QFontMetricsF(nameFont).elidedText(entry.name, Qt::ElideRight, nameRoom);
    painter.setFont(nameFont);
    painter.setPen(palette.text1);
    painter.drawText(QRectF(left, plate.y(), nameRoom, plate.height()), RowPlate::kLineFlags, name);
    const double secondLeft = left + QFontMetricsF(nameFont).horizontalAdvance(name) + kSummaryGap;
    const double secondRoom = left + room - secondLeft;
    painter.setFont(secondFont);
    painter.setPen(entry.isMissing ? palette.redText : palette.text3);
    painter.drawText(QRectF(secondLeft, plate.y(), secondRoom, plate.height()), RowPlate::kLineFlags,
                     QFontMetricsF(secondFont).elidedText(entry.secondText(), Qt::ElideRight, secondRoom));
}

} // namespace ostrelle
