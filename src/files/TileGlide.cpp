#include "files/TileGlide.h"

#include "notch/NotchAppearance.h"
#include "records/Motion.h"

#include <utility>

namespace ostrelle {
namespace {

constexpr double kListResponse = 0.22;

} // namespace

TileGlide::TileGlide(const ControlContext &context, std::function<void()> changed)
    : m_context(context)
    , m_left(context, 0, [this, changed = std::move(changed)] {
        if (!m_left.isMoving())
            m_change = {};
        changed();
    })
{
}

void TileGlide::begin(Change change)
{
    m_change = std::move(change);
    if (m_context.appearance.reducesMotion())
        m_change.offsets.clear();
    m_left.jumpTo(1);
    m_left.animateTo(0, Motion::damped(kListResponse));
}

QPointF TileGlide::offset(const QUuid &tile) const
{
    return m_change.offsets.value(tile) * m_left.value();
}

double TileGlide::presence(const QUuid &tile) const
{
    return m_change.arriving.contains(tile) ? 1 - m_left.value() : 1;
}

} // namespace ostrelle
