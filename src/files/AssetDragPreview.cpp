#include "files/AssetDragPreview.h"

#include "notch/Glyph.h"
#include "notch/Theme.h"
#include "notch/controls/CentredImage.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;
constexpr double kOpacity = 0.92;
constexpr double kPictureSymbolSize = 22;
constexpr double kBadgeHeight = 18;
constexpr double kBadgePadding = 5.5;
constexpr double kBadgeMargin = 2;

void paintRounded(QPainter &painter, const QRectF &rect, double radius, const QImage &picture)
{
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QBrush brush(picture);
    const double scale = rect.width() / picture.width();
    brush.setTransform(QTransform::fromTranslate(rect.x(), rect.y()).scale(scale, scale));
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
    painter.restore();
}

/// On a plate of its own, because anything may lie below.
void paintSymbol(QPainter &painter, const QRectF &rect, const QString &symbol)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::kHardware);
    painter.drawRoundedRect(rect, kRadius, kRadius);
    paintGlyph(painter, symbol, rect, kPictureSymbolSize, GlyphWeight::Regular, Qt::white);
}

void paintCount(QPainter &painter, int count)
{
    const QString text = QString::number(count);
    painter.setFont(Theme::font(FontRole::CaptionMedium));
    const double width =
        std::max(QFontMetricsF(painter.font()).horizontalAdvance(text) + 2 * kBadgePadding, kBadgeHeight);
    const QRectF badge(AssetDragPreview::kSide - kBadgeMargin - width, kBadgeMargin, width, kBadgeHeight);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::kAccentVivid);
    painter.drawRoundedRect(badge, kBadgeHeight / 2, kBadgeHeight / 2);
    painter.setPen(Qt::white);
    painter.drawText(badge, Qt::AlignCenter, text);
}

} // namespace

QPixmap AssetDragPreview::rendered(double devicePixelRatio) const
{
    const auto side = static_cast<int>(std::ceil(kSide * devicePixelRatio));
    QPixmap pixmap(side, side);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(kOpacity);
    const QRect whole(0, 0, kSide, kSide);
    if (!picture.isNull())
        paintRounded(painter, whole, kRadius, picture);
    else if (!icon.isNull())
        paintCentred(painter, whole, icon);
    else
        paintSymbol(painter, whole, symbol);
    painter.setOpacity(1);
    if (count > 1)
        paintCount(painter, count);
    return pixmap;
}

} // namespace ostrelle
