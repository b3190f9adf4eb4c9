#pragma once

#include "platform/x11/WatchConnection.h"

#include <QObject>
#include <QPoint>

#include <optional>

namespace ostrelle {

/// The pointer of the whole desktop: where it is, its buttons, and raw events of presses, also while another program
/// has grabbed it (XInput 2.2). Raw motion wakes the program once per event, so it is watched only on request.
class X11RawPointer final : public QObject
{
    Q_OBJECT
public:
    struct State
    {
        QPoint position; ///< native, on the root window
        bool isButtonHeld = false;
    };

    explicit X11RawPointer(WatchConnection &watch, QObject *parent = nullptr);

    /// One round trip; nothing when the pointer is on another X screen.
    std::optional<State> state() const;
    void watchMotion(bool on);
    /// Presses from now on are meant for something of this program that has the pointer, and told to nobody else.
    void disregardPresses();
    /// Presses are told again, those later than that server time when it is given.
    void heedPresses(std::optional<quint32> after);

Q_SIGNALS:
    /// A button other than the wheel's went down, at that server time.
    void pressed(quint32 time);
    void moved();

private:
    void handle(const xcb_generic_event_t &event);
    void select(std::uint32_t mask);
    bool isHeeded(quint32 time);

    WatchConnection &m_watch;
    int m_inputOpcode = 0;
    bool m_isDisregarding = false;
    std::optional<quint32> m_heedAfter;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
