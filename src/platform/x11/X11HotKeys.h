#pragma once

#include "platform/HotKeys.h"
#include "platform/x11/WatchConnection.h"

#include <QAbstractNativeEventFilter>

#include <vector>

namespace ostrelle {

class X11Keyboard;

/// Hot keys as passive grabs on the root window, with the locks (Caps, Num, Scroll) in any state. What another program
/// holds is asked for again when the keyboard map or the window manager has changed.
///
/// The action does not wait for the release; until then the server sends further keys here, which go nowhere, and none
/// to the window that has the focus. A menu of this program gives way to a hot key; another program's menu, and
/// whatever else has the keyboard to itself, keeps it.
class X11HotKeys final : public HotKeys, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    X11HotKeys(WatchConnection &watch, X11Keyboard &keyboard, QObject *parent = nullptr);
    ~X11HotKeys() override;

    void set(const QList<HotKey> &keys) override;
    std::optional<State> state(int id) const override;
    /// Ends the grab that a hot key has while it is held, for a part of this program that needs the keyboard.
    void yieldKeyboard();

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    struct Grab
    {
        xcb_keycode_t key;
        std::uint16_t modifiers;

        bool operator==(const Grab &) const = default;
    };
    struct Entry
    {
        HotKey key;
        std::vector<Grab> grabs; ///< all or none of them are held
        bool isGranted = false;
    };

    std::vector<Grab> grabsFor(const HotKey &key) const;
    bool grab(const Entry &entry);
    void ungrab(const std::vector<Grab> &grabs);
    void giveBack(Entry &entry);
    void grabMissing();
    /// Makes what moved on the board anew, and tries again what was refused.
    void renew();
    void handle(const xcb_generic_event_t &event);
    /// The granted hot key that this press is, or null.
    const HotKey *hotKeyOf(const xcb_key_press_event_t &press) const;
    void keyPressed(const xcb_key_press_event_t &press);
    void keyReleased(std::uint32_t key);
    /// Also those that come when the grab has ended before the key was released.
    void watchReleases(bool on);

    WatchConnection &m_watch;
    X11Keyboard &m_keyboard;
    xcb_atom_t m_managerCheck;
    xcb_atom_t m_managerSelection;
    int m_managerEvent = 0;
    int m_inputOpcode = 0;
    std::vector<Entry> m_entries;
    xcb_keycode_t m_heldKey = 0;
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
