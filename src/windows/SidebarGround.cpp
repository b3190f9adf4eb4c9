#include "windows/SidebarGround.h"

#include "notch/DitherTile.h"
#include "notch/GradientSampler.h"
#include "notch/ThemeGradients.h"
#include "windows/WindowColors.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kCentreX = -4;
constexpr double kCentreBelow = 18; ///< below the lower edge
constexpr double kReach = 250;
constexpr double kDarkStrength = 0.8;

} // namespace

QImage sidebarGround(const QSize &size, double devicePixelRatio, NotchTheme theme, ColorScheme scheme,
                     Contrast contrast)
{
    QImage image((QSizeF(size) * devicePixelRatio).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(devicePixelRatio);
    const QColor ground = WindowColors::of(scheme, contrast).sidebar;
    image.fill(ground);
    const bool dark = scheme == ColorScheme::Dark;
    const double opacity = cornerOpacity(theme, scheme) * (dark ? kDarkStrength : 1);
    const GradientSampler colors(themeColors(theme, scheme), QPointF(0, size.height()), QPointF(size.width(), 0));
    const std::array<float, 3> base = {ground.redF(), ground.greenF(), ground.blueF()};
    const QPointF centre(kCentreX, size.height() + kCentreBelow);
    const int firstRow = std::max(0, static_cast<int>((centre.y() - kReach) * devicePixelRatio));
    for (int row = firstRow; row < image.height(); ++row) {
        auto *pixels = reinterpret_cast<QRgb *>(image.scanLine(row));
        for (int column = 0; column < image.width(); ++column) {
            const QPointF position = QPointF(column + 0.5, row + 0.5) / devicePixelRatio;
            const QPointF away = position - centre;
            const double light = opacity * cornerFalloff(std::hypot(away.x(), away.y()), kReach);
            if (light <= 0)
                continue;
            const GradientSampler::Color color = colors.at(position);
            constexpr unsigned kMask = kDitherTileSize - 1;
            // Below one step of a channel, so that the slow slope shows no rings.
            const double noise =
                ditherTile()[static_cast<unsigned>(row) & kMask][static_cast<unsigned>(column) & kMask] / 64.0;
            std::array<int, 3> bytes{};
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                const double below = dark ? base[i] : base[i] * (1 - light);
                bytes[i] = std::clamp(static_cast<int>((below + color[i] * light) * 255 + noise), 0, 255);
            }
            pixels[column] = qRgb(bytes[0], bytes[1], bytes[2]);
        }
    }
    return image;
}

} // namespace ostrelle
