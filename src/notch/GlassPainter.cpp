#include "notch/GlassPainter.h"

#include "notch/DitherTile.h"
#include "notch/GlassLayers.h"
#include "notch/NotchSurface.h"
#include "notch/PixelLanes.h"
#include "notch/RimPainter.h"
#include "notch/SeamPainter.h"
#include "notch/SurfaceFrame.h"

#include <QImage>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace ostrelle {
namespace {

static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "lanes are in the order of the bytes of a pixel");

constexpr double kCellSize = 8;

/// Makes the rows of one frame, each first in lanes, then cut to bytes.
class RowPainter
{
public:
    RowPainter(const SurfaceState &state, const SurfaceFrame &frame, const GlassGrid &grid, const SeamPainter &seam)
        : m_state(state)
        , m_frame(frame)
        , m_grid(grid)
        , m_seam(seam)
        , m_rim(state, frame)
        , m_layers(glassLayers(state, frame, grid))
        , m_nodes(static_cast<std::size_t>(grid.columns))
        , m_row(static_cast<std::size_t>((grid.columns - 1) * grid.cell / 2))
        , m_coverage(static_cast<std::size_t>(frame.bounds.width()))
    {
    }

    void paint(int row, uchar *bytes)
    {
        mixNodes(row);
        spreadNodes();
        const int deviceRow = m_frame.bounds.y() + row;
        if (m_seam.glowsAt(deviceRow))
            addGlow(deviceRow);
        m_rim.paintAndCut(deviceRow, m_row);
        writeBytes(deviceRow, bytes);
    }

private:
    /// The nodes of this row: between two rows of the grid, with the sheen, which needs the exact height.
    void mixNodes(int row)
    {
        const auto upper = m_layers.begin() + (row / m_grid.cell) * m_grid.columns;
        const auto lower = upper + m_grid.columns;
        const Quad part = splat(static_cast<float>(row % m_grid.cell) / static_cast<float>(m_grid.cell));
        const double height = (m_frame.bounds.y() + row + 0.5 - m_frame.rect.y()) / m_frame.rect.height();
        const Quad sheen = splat(sheenAt(height, m_state, m_frame));
        const Quad full = splat(kLaneFull);
        for (std::size_t i = 0; i < m_nodes.size(); ++i) {
            const auto column = static_cast<std::ptrdiff_t>(i);
            const Quad a = upper[column].value;
            const Quad b = lower[column].value;
            m_nodes[i].value = least(a + (b - a) * part + sheen, full);
        }
    }

    void spreadNodes()
    {
        const Quad perPixel = splat(1.0F / static_cast<float>(m_grid.cell));
        auto pair = m_row.begin();
        for (std::size_t i = 0; i + 1 < m_nodes.size(); ++i) {
            const Quad start = m_nodes[i].value;
            const Pair step = twice((m_nodes[i + 1].value - start) * perPixel);
            const Pair firstStep = Pair{0, 0, 0, 0, -1, -1, -1, -1} & step;
            Pair lanes = twice(start) + firstStep;
            for (int done = 0; done < m_grid.cell; done += 2, ++pair) {
                pair->value = lanes;
                lanes += step + step;
            }
        }
    }

    void addGlow(int deviceRow)
    {
        m_seam.glowRow(deviceRow, m_coverage);
        const SeamPainter::Glow glow = m_seam.glow();
        const Quad color = Quad{glow.blue, glow.green, glow.red, glow.alpha} * splat(kLaneFull);
        for (int i = 0; i < m_frame.bounds.width(); ++i) {
            const float coverage = m_coverage[static_cast<std::size_t>(i)];
            if (coverage <= 0)
                continue;
            const Quad below = pixelAt(m_row, i);
            setPixelAt(m_row, i, below + (color - below) * splat(coverage));
        }
    }

    /// The noise lies on the device, not on the surface: it must not swim while the surface grows. All channels of a
    /// pixel take the same, so that none exceeds its alpha.
    void writeBytes(int deviceRow, uchar *bytes)
    {
        constexpr unsigned kMask = kDitherTileSize - 1;
        const auto &tileRow = ditherTile()[static_cast<unsigned>(deviceRow) & kMask];
        const auto firstColumn = static_cast<unsigned>(m_frame.bounds.x());
        std::array<LanePair, kDitherTileSize / 2> noise;
        for (unsigned i = 0; i < noise.size(); ++i) {
            const std::int16_t a = tileRow[(firstColumn + 2 * i) & kMask];
            const std::int16_t b = tileRow[(firstColumn + 2 * i + 1) & kMask];
            noise[i].value = Pair{a, a, a, a, b, b, b, b};
        }
        const auto width = static_cast<std::size_t>(m_frame.bounds.width());
        for (std::size_t i = 0; i < width / 2; ++i) {
            const PairBytes two = cut(m_row[i].value + noise[i % noise.size()].value);
            std::memcpy(bytes + i * sizeof(two), &two, sizeof(two));
        }
        if (width % 2 != 0) {
            const PairBytes two = cut(m_row[width / 2].value + noise[width / 2 % noise.size()].value);
            std::memcpy(bytes + (width - 1) * sizeof(quint32), &two, sizeof(quint32));
        }
    }

    /// The noise may carry white past 255 and black below 0, where they would wrap around.
    static PairBytes cut(Pair lanes)
    {
        const Pair shifted = lanes >> kLaneShift;
        const Pair black = {};
        const Pair white = black + 255;
        const Pair capped = shifted > white ? white : shifted;
        return __builtin_convertvector(capped < black ? black : capped, PairBytes);
    }

    const SurfaceState &m_state;
    const SurfaceFrame &m_frame;
    const GlassGrid &m_grid;
    const SeamPainter &m_seam;
    RimPainter m_rim;
    std::vector<LaneQuad> m_layers;
    std::vector<LaneQuad> m_nodes;
    std::vector<LanePair> m_row;
    std::vector<float> m_coverage;
};

} // namespace

GlassGrid::GlassGrid(const SurfaceFrame &frame)
    : cell(std::max(2, 2 * static_cast<int>(std::lround(kCellSize * frame.scale / 2))))
    , columns((frame.bounds.width() - 1) / cell + 2)
    , rows((frame.bounds.height() - 1) / cell + 2)
    , m_first((QPointF(frame.bounds.topLeft()) + QPointF(0.5, 0.5) - frame.rect.topLeft()) / frame.scale)
    , m_step(cell / frame.scale)
{
}

QPointF GlassGrid::position(int column, int row) const
{
    return m_first + QPointF(column, row) * m_step;
}

void paintGlass(QImage &image, const SurfaceState &state, const SurfaceFrame &frame, const SeamPainter &seam)
{
    const GlassGrid grid(frame);
    RowPainter rows(state, frame, grid, seam);
    for (int row = 0; row < image.height(); ++row)
        rows.paint(row, image.scanLine(row));
}

} // namespace ostrelle
