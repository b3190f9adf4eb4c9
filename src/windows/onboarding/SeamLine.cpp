#include "windows/onboarding/SeamLine.h"

#include "notch/Gaussian.h"
#include "notch/ThemeGradients.h"

#include <QLinearGradient>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kGlowOpacity = 0.8;
constexpr double kStep = 0.5;

} // namespace

void paintSeamLine(QPainter &painter, const QRectF &line, NotchTheme theme, ColorScheme scheme, double glowRadius)
{
    QLinearGradient gradient(line.topLeft(), line.topRight());
    gradient.setStops(seamStops(theme, scheme));
    const double deviation = glowRadius / 2;
    const double reach = line.height() / 2 + 3 * deviation;
    painter.save();
    for (double y = -reach; y < reach; y += kStep) {
        painter.setOpacity(kGlowOpacity * blurredBar(y + kStep / 2, -line.height() / 2, line.height() / 2, deviation));
        painter.fillRect(QRectF(line.x(), line.center().y() + y, line.width(), kStep), gradient);
    }
    painter.setOpacity(1);
    painter.fillRect(line, gradient);
    painter.restore();
}

} // namespace ostrelle
