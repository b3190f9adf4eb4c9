#include "windows/onboarding/OnboardingGround.h"

#include "notch/DitherTile.h"
#include "notch/Gaussian.h"
#include "notch/GradientSampler.h"
#include "notch/ThemeGradients.h"
#include "windows/onboarding/OnboardingColors.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/SeamLine.h"

#include <QBrush>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ostrelle {
namespace {

constexpr QPointF kGlowCentre(300, -46);
constexpr QSizeF kGlowReach(430, 330);
constexpr double kShadowOffset = 24;
/// A shadow of radius r is a Gaussian of deviation r / 2.
constexpr double kShadowDeviation = 30;
constexpr double kSeamHeight = 1.5;
constexpr double kSeamGlow = 3;
constexpr double kRimWidth = 0.75;

/// One channel as a byte; `noise` from the dither tile decides about fractions, so that slow gradients do not band.
int asByte(float value, int noise)
{
    const int lanes = static_cast<int>(std::clamp(value, 0.0F, 1.0F) * (255 * 64));
    return std::min((lanes + noise) >> 6, 255);
}

/// Premultiplied.
struct Pixel
{
    float red;
    float green;
    float blue;
    float alpha;

    static Pixel of(const QColor &color)
    {
        const float alpha = color.alphaF();
        return {color.redF() * alpha, color.greenF() * alpha, color.blueF() * alpha, alpha};
    }
    Pixel over(const Pixel &below) const
    {
        const float rest = 1 - alpha;
        return {red + below.red * rest, green + below.green * rest, blue + below.blue * rest,
                alpha + below.alpha * rest};
    }
    Pixel plus(const Pixel &other) const
    {
        return {red + other.red, green + other.green, blue + other.blue, alpha + other.alpha};
    }
    QRgb packed(int noise) const
    {
        const int a = asByte(alpha, noise);
        const auto channel = [noise, a](float value) { return std::min(asByte(value, noise), a); };
        return qRgba(channel(red), channel(green), channel(blue), a);
    }
};

QImage makeImage(const QSize &size, double ratio)
{
    return QImage((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
}

QImage content(const OnboardingGround &ground, double ratio)
{
    const OnboardingColors &colors = OnboardingColors::of(ground.scheme, ground.contrast);
    QColor base = colors.ground;
    if (ground.backing != OwnFrame::Backing::Blurred)
        base.setAlpha(255);
    const Pixel basePixel = Pixel::of(base);
    const Pixel footer = Pixel::of(colors.footer);
    const bool isDark = ground.scheme == ColorScheme::Dark;
    const auto strength = static_cast<float>(cornerOpacity(ground.theme, ground.scheme) * colors.glowStrength);
    const GradientSampler sweep(themeColors(ground.theme, ground.scheme), {0, 0},
                                {static_cast<double>(onboarding::kContent.width()), 0});

    QImage image = makeImage(onboarding::kContent, ratio);
    std::vector<GradientSampler::Color> along(static_cast<std::size_t>(image.width()));
    for (std::size_t x = 0; x < along.size(); ++x)
        along[x] = sweep.at({(static_cast<double>(x) + 0.5) / ratio, 0});
    const DitherTile &noise = ditherTile();
    for (int row = 0; row < image.height(); ++row) {
        const double y = (row + 0.5) / ratio;
        const double down = (y - kGlowCentre.y()) / kGlowReach.height();
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const auto &noiseRow = noise[static_cast<std::size_t>(row % kDitherTileSize)];
        for (int column = 0; column < image.width(); ++column) {
            const double across = ((column + 0.5) / ratio - kGlowCentre.x()) / kGlowReach.width();
            constexpr double kPercent = 100;
            const double distance = std::sqrt(across * across + down * down);
            const float light = strength * static_cast<float>(cornerFalloff(distance * kPercent, kPercent));
            const auto &tint = along[static_cast<std::size_t>(column)];
            const Pixel glow{tint[0] * light, tint[1] * light, tint[2] * light, light};
            Pixel pixel = isDark ? basePixel.plus(glow) : glow.over(basePixel);
            if (y >= onboarding::kPage.height())
                pixel = footer.over(pixel);
            line[column] = pixel.packed(noiseRow[static_cast<std::size_t>(column % kDitherTileSize)]);
        }
    }
    QPainter painter(&image);
    painter.scale(ratio, ratio);
    paintSeamLine(painter, QRectF(0, onboarding::kPage.height(), onboarding::kContent.width(), kSeamHeight),
                  ground.theme, ground.scheme, kSeamGlow);
    return image;
}

/// Against such a blur the round corners make no difference that is seen: the product of two blurred bars will do.
void paintShadow(QImage &image, const QMargins &room, const QColor &color, double ratio)
{
    const QRectF box = QRectF(onboarding::contentRect(room)).translated(0, kShadowOffset);
    const auto profile = [ratio](int count, double from, double to) {
        std::vector<float> values(static_cast<std::size_t>(count));
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] =
                static_cast<float>(blurredBar((static_cast<double>(i) + 0.5) / ratio, from, to, kShadowDeviation));
        return values;
    };
    const std::vector<float> across = profile(image.width(), box.x(), box.x() + box.width());
    const std::vector<float> down = profile(image.height(), box.y(), box.y() + box.height());
    const DitherTile &noise = ditherTile();
    for (int row = 0; row < image.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const auto &noiseRow = noise[static_cast<std::size_t>(row % kDitherTileSize)];
        for (int column = 0; column < image.width(); ++column) {
            const float strength = across[static_cast<std::size_t>(column)] * down[static_cast<std::size_t>(row)];
            const float alpha = color.alphaF() * strength;
            const Pixel pixel{color.redF() * alpha, color.greenF() * alpha, color.blueF() * alpha, alpha};
            line[column] = pixel.packed(noiseRow[static_cast<std::size_t>(column % kDitherTileSize)]);
        }
    }
}

void paintRims(QPainter &painter, const QMargins &room, const OnboardingColors &colors)
{
    const QRectF box(onboarding::contentRect(room));
    // Without room around the window both lie inside.
    const double edge = room.isNull() ? -kRimWidth : 0;
    const auto stroke = [&painter, &box, edge](double outward, const QBrush &brush) {
        const double reach = edge + outward;
        painter.setPen(QPen(brush, kRimWidth));
        painter.drawRoundedRect(box.adjusted(-reach, -reach, reach, reach), onboarding::kCorner + reach,
                                onboarding::kCorner + reach);
    };
    painter.setBrush(Qt::NoBrush);
    stroke(kRimWidth / 2, colors.rimOutside);
    QLinearGradient inner(box.topLeft(), box.topLeft() + QPointF(0, onboarding::kCorner));
    inner.setColorAt(0, colors.rimTop);
    inner.setColorAt(1, colors.rim);
    stroke(-kRimWidth / 2, inner);
}

} // namespace

QImage OnboardingGround::picture(double devicePixelRatio) const
{
    const OnboardingColors &colors = OnboardingColors::of(scheme, contrast);
    QImage picture = makeImage(onboarding::kContent.grownBy(shadowRoom), devicePixelRatio);
    const bool isCut = backing == OwnFrame::Backing::Opaque;
    if (isCut || shadowRoom.isNull())
        picture.fill(Qt::transparent);
    else
        paintShadow(picture, shadowRoom, colors.shadow, devicePixelRatio);

    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(devicePixelRatio, devicePixelRatio);
    // Nothing of the shadow shows through the window itself.
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(onboarding::outline(shadowRoom), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);

    const QRect place = onboarding::contentRect(shadowRoom);
    QBrush brush(content(*this, devicePixelRatio));
    brush.setTransform(
        QTransform::fromTranslate(place.x(), place.y()).scale(1 / devicePixelRatio, 1 / devicePixelRatio));
    // A window that is cut to the outline by whole pixels must not be half covered anywhere.
    if (isCut)
        painter.fillRect(place, brush);
    else
        painter.fillPath(onboarding::outline(shadowRoom), brush);
    paintRims(painter, shadowRoom, colors);
    painter.end();
    picture.setDevicePixelRatio(devicePixelRatio);
    return picture;
}

} // namespace ostrelle
