#pragma once

#include "foundation/SerialQueue.h"
#include "platform/PanelHost.h"

#include <QObject>
#include <QRect>

#include <functional>

namespace ostrelle {

class WatchConnection;
class X11PanelWindow;

/// Captures what lies behind the panel, reduced, without the panel in it.
///
/// With a compositor the windows below are drawn together by a background thread on a connection of its own. Without
/// one the screen is read at once, in order with the toolkit's requests (0.2 ms from a local server), so that the
/// panel's outline of this moment tells which of the pixels are its own.
class X11Backdrop final : public QObject
{
    Q_OBJECT
public:
    X11Backdrop(WatchConnection &watch, const X11PanelWindow &panel, QObject *parent = nullptr);

    enum class Source { WindowsBelow, Screen };
    void capture(const QRectF &area, Source source, QObject *context, std::function<void(BackdropCapture)> answer);

private:
    QImage readScreen(const QRect &native) const;

    WatchConnection &m_watch;
    const X11PanelWindow &m_panel;
    SerialQueue m_queue; // last: its jobs end before anything else here
};

} // namespace ostrelle
