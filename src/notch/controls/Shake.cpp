#include "notch/controls/Shake.h"

#include "notch/NotchAppearance.h"
#include "records/Motion.h"

#include <cmath>
#include <numbers>

namespace ostrelle {
namespace {

constexpr double kSeconds = 0.44;
constexpr double kSwings = 3;
constexpr double kReach = 4;
constexpr double kDimmed = 0.4;

} // namespace

Shake::Shake(const ControlContext &context, std::function<void()> changed)
    : m_context(context)
    , m_left(context, 0, std::move(changed))
{
}

void Shake::start()
{
    m_left.jumpTo(1);
    m_left.fadeTo(0, Motion::fade(kSeconds));
}

double Shake::offset() const
{
    if (m_context.appearance.reducesMotion())
        return 0;
    const double left = m_left.value();
    return kReach * left * std::sin(2 * std::numbers::pi * kSwings * (1 - left));
}

double Shake::opacity() const
{
    return m_context.appearance.reducesMotion() ? 1 - (1 - kDimmed) * m_left.value() : 1;
}

} // namespace ostrelle
