#pragma once

#include "platform/ActivationToken.h"

#include <memory>

class QPainterPath;
class QWidget;

namespace ostrelle {

class OwnFrame;

/// The program's windows other than the panel: with a taskbar entry and the keyboard, like those of any application.
/// Main thread.
class OrdinaryWindows
{
public:
    virtual ~OrdinaryWindows() = default;

    /// Shows the window, or brings it to the front, and makes it the active one.
    virtual void present(QWidget &window, const ActivationToken &token) = 0;
    /// Whether a window may be larger than its frame, for a shadow around it: a window manager that does not know of
    /// that would take the room for a part of the window.
    virtual bool leavesRoomForShadows() const = 0;
    /// For a window that paints its frame by itself, before it was ever shown. `outline` is in the widget's
    /// coordinates. The window lives longer than the frame.
    virtual std::unique_ptr<OwnFrame> makeOwnFrame(QWidget &window, const QPainterPath &outline) = 0;
};

} // namespace ostrelle
