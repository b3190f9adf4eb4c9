#pragma once

#include "platform/ActivationToken.h"

class QWidget;

namespace ostrelle {

/// The program's windows other than the panel: with a frame, a taskbar entry and the keyboard, like those of any
/// application. Main thread.
class OrdinaryWindows
{
public:
    virtual ~OrdinaryWindows() = default;

    /// Shows the window, or brings it to the front, and makes it the active one.
    virtual void present(QWidget &window, const ActivationToken &token) = 0;
};

} // namespace ostrelle
