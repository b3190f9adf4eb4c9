#include "platform/x11/X11PointerNear.h"

#include "platform/Screens.h"
#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/X11RawPointer.h"

#include <algorithm>

namespace ostrelle {

namespace {

double distanceToRange(double value, double from, double length)
{
    return std::max({from - value, value - (from + length), 0.0});
}

} // namespace

X11PointerNear::X11PointerNear(X11RawPointer &pointer, const X11PanelWindow &panel, const Screens &screens,
                               QObject *parent)
    : PointerNear(parent)
    , m_pointer(pointer)
    , m_panel(panel)
    , m_screens(screens)
{
    connect(&pointer, &X11RawPointer::moved, this, [this] {
        // Many motions may wait in one batch; one question after them answers all.
        if (m_isWatching && !std::exchange(m_isSettling, true)) {
            QMetaObject::invokeMethod(this, &X11PointerNear::settle, Qt::QueuedConnection);
        }
    });
}

Answer X11PointerNear::isWithin(const QRectF &rect) const
{
    const auto pointer = m_pointer.state();
    if (!pointer || !m_panel.id()) {
        return Answer::Unknown;
    }
    // The middle of the pixel that the pointer is on.
    const QPointF position = (QPointF(pointer->position - m_panel.origin()) + QPointF(0.5, 0.5)) / m_panel.scale();
    return rect.contains(position) ? Answer::Yes : Answer::No;
}

std::optional<QString> X11PointerNear::screen() const
{
    const auto pointer = m_pointer.state();
    return pointer ? screenAt(pointer->position) : std::nullopt;
}

void X11PointerNear::watchScreen(bool on)
{
    if (m_isWatching != on) {
        m_isWatching = on;
        m_pointer.watchMotion(on);
        m_lastScreen = on ? screen() : std::nullopt; // its round trip also means that the watch is on
    }
}

std::optional<QString> X11PointerNear::screenAt(const QPoint &native) const
{
    // A screen keeps its native corner and has its size divided by the scale, so frames are compared in native pixels.
    // A rounded size may miss the last column.
    std::optional<QString> nearest;
    double least = 1.5;
    const QList<Screen> screens = m_screens.all();
    for (const Screen &screen : screens) {
        const QRectF &frame = screen.frame;
        const double distance = distanceToRange(native.x() + 0.5, frame.x(), frame.width() * screen.scale) +
                                distanceToRange(native.y() + 0.5, frame.y(), frame.height() * screen.scale);
        if (distance < least) {
            least = distance;
            nearest = screen.name;
        }
    }
    return nearest;
}

void X11PointerNear::settle()
{
    m_isSettling = false;
    if (!m_isWatching) {
        return;
    }
    const std::optional<QString> now = screen();
    if (now && now != m_lastScreen) {
        m_lastScreen = now;
        Q_EMIT screenChanged(*now);
    }
}

} // namespace ostrelle
