#pragma once

#include "platform/OwnFrame.h"
#include "platform/x11/X11Glass.h"

#include <QPainterPath>

class QWidget;

namespace ostrelle {

class WatchConnection;

/// The room around the outline is told to window managers and compositors (_GTK_FRAME_EXTENTS), takes no pointer, and
/// without a compositor is cut off.
class X11OwnFrame final : public OwnFrame
{
public:
    X11OwnFrame(WatchConnection &watch, QWidget &window, const QPainterPath &outline);

    Backing backing() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void send() const;
    void sendExtents(double scale) const;

    WatchConnection &m_watch;
    QWidget &m_window;
    QPainterPath m_outline;
    X11Glass m_glass;
};

} // namespace ostrelle
