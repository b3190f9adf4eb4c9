// Painting one frame of the notch surface, without widgets. Budget, as the 95th percentile on one core: 2.5 ms at scale
// 1 and 5.5 ms at scale 2 while it moves.

#include "notch/Backdrop.h"
#include "notch/NotchSurface.h"

#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <vector>

using namespace ostrelle;

namespace {

constexpr QSizeF kWindow{680, 490};
constexpr int kFrames = 400;

/// A window of the panel's size at one scale, with a surface that is different in every frame or always the same.
class Window
{
public:
    explicit Window(int scale)
        : m_image((kWindow * scale).toSize(), QImage::Format_ARGB32_Premultiplied)
    {
        m_image.setDevicePixelRatio(scale);
        QImage capture((kWindow / kBackdropReduction).toSize(), QImage::Format_RGB32);
        for (int y = 0; y < capture.height(); ++y) {
            for (int x = 0; x < capture.width(); ++x)
                capture.setPixel(x, y, qRgb(x * 3 % 256, y * 4 % 256, (x * y) % 256));
        }
        m_state.size = {588, 444};
        m_state.bottomRadius = 26;
        m_state.topRadius = 12;
        m_state.expansion = 1;
        m_state.backdrop = blurBackdrop(capture, ColorScheme::Dark);
    }

    void paintMoving(ColorScheme scheme, SurfaceState::Glass glass)
    {
        // Around the open size, where a frame has most pixels, as the last third of the opening has it.
        const double wave = std::sin(++m_frame * 0.37);
        m_state.size = {588 + 3 * wave, 444 + 2 * wave};
        m_state.expansion = 0.98 + 0.02 * wave;
        m_state.scheme = scheme;
        m_state.glass = glass;
        paint();
    }

    void paint()
    {
        m_image.fill(Qt::transparent);
        QPainter painter(&m_image);
        paintNotchSurface(painter, {kWindow.width() / 2, 0}, m_state, m_cache);
        benchmark::DoNotOptimize(m_image.constBits());
    }

private:
    QImage m_image;
    SurfaceState m_state;
    SurfaceCache m_cache;
    int m_frame = 0;
};

double percentile95(const std::vector<double> &values)
{
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    return sorted[static_cast<std::size_t>(static_cast<double>(sorted.size() - 1) * 0.95)];
}

/// One repetition is one frame, so that the statistics are about frames.
void perFrame(benchmark::internal::Benchmark *bench)
{
    bench->ArgName("scale")->Arg(1)->Arg(2)->Iterations(1)->Repetitions(kFrames)->Unit(benchmark::kMillisecond);
    bench->ComputeStatistics("p95", percentile95)->DisplayAggregatesOnly();
}

Window &windowOf(const benchmark::State &state)
{
    static Window atOne(1);
    static Window atTwo(2);
    return state.range(0) == 1 ? atOne : atTwo;
}

void movingDark(benchmark::State &state)
{
    for (auto _ : state)
        windowOf(state).paintMoving(ColorScheme::Dark, SurfaceState::Glass::Snapshot);
}
BENCHMARK(movingDark)->Apply(perFrame);

void movingLight(benchmark::State &state)
{
    for (auto _ : state)
        windowOf(state).paintMoving(ColorScheme::Light, SurfaceState::Glass::Snapshot);
}
BENCHMARK(movingLight)->Apply(perFrame);

void movingTranslucent(benchmark::State &state)
{
    for (auto _ : state)
        windowOf(state).paintMoving(ColorScheme::Dark, SurfaceState::Glass::Compositor);
}
BENCHMARK(movingTranslucent)->Apply(perFrame);

void still(benchmark::State &state)
{
    for (auto _ : state)
        windowOf(state).paint();
}
BENCHMARK(still)->Apply(perFrame);

void blur(benchmark::State &state)
{
    QImage capture(QSize(113, 88), QImage::Format_RGB32);
    capture.fill(Qt::darkCyan);
    for (auto _ : state)
        benchmark::DoNotOptimize(blurBackdrop(capture, ColorScheme::Dark));
}
BENCHMARK(blur)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
