#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QSet>
#include <QUuid>

#include <functional>
#include <map>

namespace ostrelle {

/// A quality that some tiles have, such as being under the pointer, on the hover spring: 1 for those that have it, 0
/// for all others, and between while they change. Only tiles that have it or move cost anything.
class TileMotion
{
public:
    /// `changed` is called at every step of every tile.
    TileMotion(const ControlContext &context, std::function<void()> changed);

    /// Exactly these tiles have it from now on.
    void set(const QSet<QUuid> &tiles);
    /// A spring may carry it beyond 0 and 1.
    double amount(const QUuid &tile) const;

private:
    ControlContext m_context;
    std::function<void()> m_changed;
    std::map<QUuid, AnimatedNumber> m_amounts;
};

} // namespace ostrelle
