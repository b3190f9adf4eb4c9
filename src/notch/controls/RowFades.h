#pragma once

#include "notch/controls/ControlContext.h"

#include <QList>
#include <QUuid>

#include <functional>
#include <map>
#include <memory>

namespace ostrelle {

class AnimatedNumber;

/// What fades in on some rows of a list and out on all others: the tint and the actions under the pointer. Main thread;
/// after destruction nothing is called.
class RowFades
{
public:
    RowFades(const ControlContext &context, std::function<void()> changed);
    ~RowFades();
    RowFades(const RowFades &) = delete;
    RowFades &operator=(const RowFades &) = delete;

    void show(const QList<QUuid> &rows);
    /// 0 to 1, at the moment.
    double amount(const QUuid &row) const;

private:
    ControlContext m_context;
    std::function<void()> m_changed;
    /// Those at rest at 0 leave with the next change.
    std::map<QUuid, std::unique_ptr<AnimatedNumber>> m_amounts;
};

} // namespace ostrelle
