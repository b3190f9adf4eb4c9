#include "notch/Backdrop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace ostrelle {
namespace {

struct Recipe
{
    double deviation; ///< of the whole blur, in logical pixels
    float saturation;
    float brightness;
};

constexpr Recipe kDark = {26, 1.8F, 1.2F};
constexpr Recipe kLight = {30, 1.5F, 1.0F};
constexpr int kPasses = 3;

using Color = std::array<float, 3>;

/// A box of any width: whole pixels around the centre and a share of one more at each side. Three in a row come close
/// to a Gaussian of exactly the deviation asked for (P. Gwosdek et al., "Theoretical foundations of Gaussian
/// convolution by extended box filtering", 2011).
class Box
{
public:
    explicit Box(double variance)
        : m_radius(static_cast<int>(std::floor(0.5 * std::sqrt(12 * variance + 1) - 0.5)))
    {
        const double r = m_radius;
        const double share = (2 * r + 1) * (r * (r + 1) - 3 * variance) / (6 * (variance - (r + 1) * (r + 1)));
        m_edge = static_cast<float>(share);
        m_scale = static_cast<float>(1 / (2 * r + 1 + 2 * share));
    }

    /// Blurs `count` colours that lie `stride` apart. `line` is scratch memory.
    void blur(Color *colors, int count, int stride, std::vector<Color> &line) const
    {
        const int reach = m_radius + 1;
        line.clear();
        for (int i = -reach; i < count + reach; ++i)
            line.push_back(colors[mirrored(i, count) * stride]);
        for (int i = 0; i < count; ++i)
            colors[i * stride] = sumAround(line.data() + i + reach);
    }

private:
    static int mirrored(int index, int count)
    {
        const int period = 2 * count;
        const int place = ((index % period) + period) % period;
        return place < count ? place : period - 1 - place;
    }

    Color sumAround(const Color *centre) const
    {
        Color sum{};
        for (std::size_t channel = 0; channel < sum.size(); ++channel) {
            float inner = 0;
            for (int i = -m_radius; i <= m_radius; ++i)
                inner += centre[i][channel];
            const float outer = centre[-m_radius - 1][channel] + centre[m_radius + 1][channel];
            sum[channel] = (inner + outer * m_edge) * m_scale;
        }
        return sum;
    }

    int m_radius;
    float m_edge;
    float m_scale;
};

QRgb graded(const Color &color, const Recipe &recipe)
{
    // Saturation keeps the luminance by the weights of sRGB.
    const float luminance = 0.2126F * color[0] + 0.7152F * color[1] + 0.0722F * color[2];
    std::array<int, 3> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const float saturated = std::clamp(luminance + (color[i] - luminance) * recipe.saturation, 0.0F, 255.0F);
        bytes[i] = static_cast<int>(std::lround(std::min(saturated * recipe.brightness, 255.0F)));
    }
    return qRgb(bytes[0], bytes[1], bytes[2]);
}

std::vector<Color> colorsOf(const QImage &image)
{
    std::vector<Color> colors;
    colors.reserve(static_cast<std::size_t>(image.width()) * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            colors.push_back({static_cast<float>(qRed(line[x])), static_cast<float>(qGreen(line[x])),
                              static_cast<float>(qBlue(line[x]))});
    }
    return colors;
}

} // namespace

QImage blurBackdrop(const QImage &capturedEighth, ColorScheme scheme)
{
    if (capturedEighth.isNull())
        return {};
    const Recipe recipe = scheme == ColorScheme::Dark ? kDark : kLight;
    const int width = capturedEighth.width();
    const int height = capturedEighth.height();
    std::vector<Color> colors = colorsOf(capturedEighth.convertToFormat(QImage::Format_RGB32));

    const double deviation = recipe.deviation / kBackdropReduction;
    const Box box(deviation * deviation / kPasses);
    std::vector<Color> line;
    for (int pass = 0; pass < kPasses; ++pass) {
        for (int y = 0; y < height; ++y)
            box.blur(colors.data() + y * width, width, 1, line);
        for (int x = 0; x < width; ++x)
            box.blur(colors.data() + x, height, width, line);
    }

    QImage blurred(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        auto *target = reinterpret_cast<QRgb *>(blurred.scanLine(y));
        const Color *row = colors.data() + static_cast<std::ptrdiff_t>(y) * width;
        for (int x = 0; x < width; ++x)
            target[x] = graded(row[x], recipe);
    }
    return blurred;
}

} // namespace ostrelle
