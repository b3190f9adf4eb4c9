#pragma once

#include <QProperty>

namespace ostrelle {

/// While it lives, assignments to bindable properties of this thread are collected; observers run at its end and see
/// the finished state only. As an object it also ends on an early return.
class [[nodiscard]] PropertyUpdateGroup
{
public:
    PropertyUpdateGroup() { Qt::beginPropertyUpdateGroup(); }
    ~PropertyUpdateGroup() { Qt::endPropertyUpdateGroup(); }
    PropertyUpdateGroup(const PropertyUpdateGroup &) = delete;
    PropertyUpdateGroup &operator=(const PropertyUpdateGroup &) = delete;
};

} // namespace ostrelle
