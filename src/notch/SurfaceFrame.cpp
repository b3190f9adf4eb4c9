#include "notch/SurfaceFrame.h"

#include "notch/NotchSurface.h"

namespace ostrelle {

SurfaceFrame::SurfaceFrame(const SurfaceState &state, const QPointF &topCentre, double deviceScale)
    : scale(deviceScale)
    , size(state.size)
    , glass(glassProgress(state.expansion))
    , rect(topCentre.x() - state.size.width() * deviceScale / 2, topCentre.y(), state.size.width() * deviceScale,
           state.size.height() * deviceScale)
    , shape(NotchShape{state.bottomRadius * deviceScale, state.topRadius * deviceScale}.fitted(rect.width(),
                                                                                               rect.height()))
    , bounds(rect.adjusted(-shape.topRadius, 0, shape.topRadius, 0).toAlignedRect())
{
}

} // namespace ostrelle
