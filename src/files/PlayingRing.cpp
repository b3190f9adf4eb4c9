#include "files/PlayingRing.h"

#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace ostrelle {

void PlayingRing::paint(QPainter &painter, const QRectF &rect, const NotchAppearance &appearance) const
{
    if (presence <= 0)
        return;
    QLinearGradient gradient(rect.topLeft(), rect.bottomRight());
    gradient.setStops(themeStops(appearance.theme(), appearance.scheme()));
    painter.save();
    painter.setOpacity(painter.opacity() * std::min(presence, 1.0));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(gradient, width));
    const double inset = width / 2;
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.restore();
}

} // namespace ostrelle
