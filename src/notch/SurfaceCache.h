#pragma once

#include <memory>

namespace ostrelle {

/// What paintNotchSurface() keeps between frames: the pixels of the last state, which serve again when the same state
/// is painted at the same place and scale, and their memory, which the next state reuses. A few megabytes while the
/// surface is open, nothing once a closed surface was painted. One per window; main thread.
class SurfaceCache
{
public:
    struct Pixels;

    SurfaceCache();
    ~SurfaceCache();
    SurfaceCache(const SurfaceCache &) = delete;
    SurfaceCache &operator=(const SurfaceCache &) = delete;

    /// The kept pixels, created when there are none.
    Pixels &ensurePixels();
    void release();

private:
    std::unique_ptr<Pixels> m_pixels;
};

} // namespace ostrelle
