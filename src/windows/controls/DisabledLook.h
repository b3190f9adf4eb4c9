#pragma once

#include <QWidget>

namespace ostrelle {

/// A control of the windows that cannot be used is there, but pale as a whole.
inline double opacityOf(const QWidget &control)
{
    return control.isEnabled() ? 1 : 0.38;
}

} // namespace ostrelle
