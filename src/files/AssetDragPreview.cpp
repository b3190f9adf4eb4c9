#include "files/AssetDragPreview.h"

#include "files/AssetTile.h"
#include "notch/Theme.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kRadius = 8;
constexpr double kOpacity = 0.92;
constexpr double kBadgeHeight = 18;
constexpr double kBadgePadding = 5.5;
constexpr double kBadgeMargin = 2;

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
    if (picture.isNull())
        icon.paint(&painter, whole);
    else
        paintRounded(painter, whole, kRadius, picture);
    painter.setOpacity(1);
    if (count > 1)
        paintCount(painter, count);
    return pixmap;
}

} // namespace ostrelle
