#include "notch/NotchSurface.h"

#include "notch/GlassPainter.h"
#include "notch/PixelBuffer.h"
#include "notch/SeamPainter.h"
#include "notch/ShadowPainter.h"
#include "notch/SurfaceFrame.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <optional>

namespace ostrelle {

struct SurfaceCache::Pixels
{
    std::optional<SurfaceState> state;
    std::optional<SurfaceFrame> frame;
    PixelBuffer inside;
    std::array<PixelBuffer, ShadowPainter::kPieces> outside;
};

SurfaceCache::SurfaceCache() = default;
SurfaceCache::~SurfaceCache() = default;

SurfaceCache::Pixels &SurfaceCache::ensurePixels()
{
    if (m_pixels == nullptr)
        m_pixels = std::make_unique<Pixels>();
    return *m_pixels;
}

void SurfaceCache::release()
{
    m_pixels.reset();
}

namespace {

bool castsShadow(const SurfaceState &state, const SurfaceFrame &frame)
{
    return state.glass != SurfaceState::Glass::None && frame.glass > 0;
}

void render(SurfaceCache::Pixels &pixels, const SurfaceState &state, const SurfaceFrame &frame)
{
    QImage &inside = pixels.inside.reset(frame.bounds.size());
    const SeamPainter seam(state, frame);
    paintGlass(inside, state, frame, seam);
    QPainter painter(&inside);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-frame.bounds.topLeft());
    seam.paintLine(painter);
    painter.end();

    if (castsShadow(state, frame)) {
        const auto pieces = ShadowPainter::piecesOf(frame);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (!pieces[i].isEmpty())
                ShadowPainter(state.scheme, frame, pieces[i]).paint(pixels.outside[i].reset(pieces[i].size()));
        }
    }
    pixels.state = state;
    pixels.frame = frame;
}

/// A window that is cut to the outline by whole pixels must not be half covered anywhere: half a pixel more covers what
/// the cut may include.
void fillClosed(QPainter &painter, const SurfaceState &state, const SurfaceFrame &frame)
{
    if (state.glass == SurfaceState::Glass::None) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.strokePath(frame.outline(), QPen(Qt::black, 1));
    }
    painter.fillPath(frame.outline(), Qt::black);
}

void composite(QPainter &painter, const SurfaceCache::Pixels &pixels, const SurfaceState &state,
               const SurfaceFrame &frame)
{
    if (castsShadow(state, frame)) {
        const auto pieces = ShadowPainter::piecesOf(frame);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (!pieces[i].isEmpty())
                painter.drawImage(pieces[i].topLeft(), pixels.outside[i].image());
        }
    }
    // Images and not a brush filling the outline: Qt fills paths in small batches on its thread pool, and waiting for
    // those took twice as long as the work.
    painter.drawImage(frame.bounds.topLeft(), pixels.inside.image());
}

} // namespace

double glassProgress(double expansion)
{
    return std::clamp((expansion - 0.2) / 0.8, 0.0, 1.0);
}

double seamOpacity(double expansion)
{
    return std::clamp((expansion - 0.35) / 0.65, 0.0, 1.0);
}

QPainterPath surfaceOutline(const QPointF &topCentre, const SurfaceState &state)
{
    return SurfaceFrame(state, topCentre, 1).outline();
}

void paintNotchSurface(QPainter &painter, const QPointF &topCentre, const SurfaceState &state, SurfaceCache &cache)
{
    const QTransform toDevice = painter.deviceTransform();
    const SurfaceFrame frame(state, toDevice.map(topCentre), toDevice.m11());
    if (frame.bounds.isEmpty())
        return;

    painter.save();
    // From here on the painter's units are device pixels, so that kept pixels land where they were made for.
    painter.setWorldTransform(toDevice.inverted() * painter.worldTransform());
    painter.setRenderHint(QPainter::Antialiasing);
    if (state.expansion <= 0) {
        cache.release();
        fillClosed(painter, state, frame);
    } else {
        SurfaceCache::Pixels &pixels = cache.ensurePixels();
        if (pixels.state != state || pixels.frame != frame)
            render(pixels, state, frame);
        composite(painter, pixels, state, frame);
    }
    painter.restore();
}

} // namespace ostrelle
