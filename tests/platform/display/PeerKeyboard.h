#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

#include <xcb/xcb.h>

namespace ostrelle {

/// The user's hands on the keyboard (XTEST), and what other programs do with it. Keys are given by their place, as an
/// ANSI board's virtual codes. Every call is done, as far as the server is concerned, on return.
class PeerKeyboard
{
public:
    PeerKeyboard();
    ~PeerKeyboard();
    PeerKeyboard(const PeerKeyboard &) = delete;
    PeerKeyboard &operator=(const PeerKeyboard &) = delete;

    static xcb_keycode_t keyAt(quint32 keyCode);

    /// Presses the modifiers, then the key.
    void hold(quint32 keyCode, Qt::KeyboardModifiers modifiers);
    /// Waits until the server has had time for several repetitions of a held key.
    void letItRepeat();
    void release();
    void press(quint32 keyCode, Qt::KeyboardModifiers modifiers);
    void tap(xcb_keycode_t key);

    /// A hot key of this program.
    void grab(quint32 keyCode, Qt::KeyboardModifiers modifiers);
    /// The whole keyboard, as a locker or a menu does; false when somebody else has it.
    bool grabAll();
    void ungrabAll();
    /// The root window tells of a window manager once more.
    void announceWindowManager();

    /// setxkbmap or xmodmap with these arguments.
    static void setMap(const QString &program, const QStringList &arguments);

private:
    struct Disconnected
    {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    void fake(std::uint8_t type, xcb_keycode_t key);
    void synchronize();
    xcb_timestamp_t serverTime();

    std::unique_ptr<xcb_connection_t, Disconnected> m_connection;
    xcb_window_t m_root;
    std::vector<xcb_keycode_t> m_held; ///< in the order in which they went down
};

} // namespace ostrelle
