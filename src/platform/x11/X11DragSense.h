#pragma once

#include "platform/DragSense.h"
#include "platform/x11/WatchConnection.h"

namespace ostrelle {

class X11RawPointer;

/// A drag with data begins when its source takes the XdndSelection (XDND 5), which XFixes announces each time.
class X11DragSense final : public DragSense
{
    Q_OBJECT
public:
    X11DragSense(WatchConnection &watch, const X11RawPointer &pointer, QObject *parent = nullptr);

    qint64 changeCount() const override { return m_changeCount; }
    qint64 countAtPress() const override { return m_countAtPress; }
    Answer isButtonHeld() const override;

private:
    void handle(const xcb_generic_event_t &event);

    const X11RawPointer &m_pointer;
    xcb_atom_t m_selection;
    int m_fixesEvent;
    qint64 m_changeCount = 0;
    qint64 m_countAtPress = 0;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
