#include "platform/x11/BackdropReduction.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace ostrelle {

namespace {

/// The pixels of one cell along one side: never empty, within the image.
struct Span
{
    int from;
    int to; ///< exclusive
};

Span cellSpan(int index, double cell, int length)
{
    const int from = std::min(static_cast<int>(index * cell), length - 1);
    return {from, std::clamp(static_cast<int>((index + 1) * cell), from + 1, length)};
}

QRgb average(const QImage &pixels, Span columns, Span rows)
{
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    for (int y = rows.from; y < rows.to; ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(pixels.constScanLine(y));
        for (int x = columns.from; x < columns.to; ++x) {
            red += static_cast<std::uint64_t>(qRed(line[x]));
            green += static_cast<std::uint64_t>(qGreen(line[x]));
            blue += static_cast<std::uint64_t>(qBlue(line[x]));
        }
    }
    const auto count =
        static_cast<std::uint64_t>(columns.to - columns.from) * static_cast<std::uint64_t>(rows.to - rows.from);
    const auto mean = [count](std::uint64_t sum) { return static_cast<int>((sum + count / 2) / count); };
    return qRgb(mean(red), mean(green), mean(blue));
}

} // namespace

QImage reduceToCells(const QImage &pixels, double cell, const QSize &size)
{
    if (pixels.isNull() || size.isEmpty()) {
        return {};
    }
    QImage reduced(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(reduced.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            line[x] = average(pixels, cellSpan(x, cell, pixels.width()), cellSpan(y, cell, pixels.height()));
        }
    }
    return reduced;
}

void replaceByWhatIsBelow(QImage &pixels, const QRegion &region)
{
    const QRegion covered = region & pixels.rect();
    if (covered.isEmpty()) {
        return;
    }
    constexpr int kNothing = -1;
    std::vector<int> lowest(static_cast<std::size_t>(pixels.width()), kNothing);
    for (const QRect &rect : covered) {
        for (int x = rect.x(); x < rect.x() + rect.width(); ++x) {
            int &row = lowest[static_cast<std::size_t>(x)];
            row = std::max(row, rect.y() + rect.height() - 1);
        }
    }
    // The column whose pixel below the region stands for this one: its own, else the nearest.
    std::vector<int> source(lowest.size(), kNothing);
    for (int x = 0; x < pixels.width(); ++x) {
        for (int distance = 0; distance < pixels.width() && source[static_cast<std::size_t>(x)] == kNothing;
             ++distance) {
            for (const int candidate : {x - distance, x + distance}) {
                if (candidate >= 0 && candidate < pixels.width() &&
                    lowest[static_cast<std::size_t>(candidate)] + 1 < pixels.height()) {
                    source[static_cast<std::size_t>(x)] = candidate;
                }
            }
        }
    }
    const QImage original = pixels.copy();
    for (const QRect &rect : covered) {
        for (int x = rect.x(); x < rect.x() + rect.width(); ++x) {
            const int from = source[static_cast<std::size_t>(x)];
            const QRgb colour =
                from == kNothing ? qRgb(0, 0, 0) : original.pixel(from, lowest[static_cast<std::size_t>(from)] + 1);
            for (int y = rect.y(); y < rect.y() + rect.height(); ++y) {
                reinterpret_cast<QRgb *>(pixels.scanLine(y))[x] = colour;
            }
        }
    }
}

} // namespace ostrelle
