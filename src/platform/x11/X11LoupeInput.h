#pragma once

#include "platform/x11/WatchConnection.h"

#include <QPoint>

#include <bitset>
#include <functional>
#include <optional>
#include <vector>

namespace ostrelle {

/// Turns the events of the grabbed pointer and keyboard into what the user wants of the loupe.
///
/// A press that ends the loupe is told at once, and its end only with the release: whatever lies below never sees the
/// second half of a click, nor the repeats of a held key.
class X11LoupeInput
{
public:
    enum class Choice { Pick, Gather, Cancel };
    struct Handlers
    {
        std::function<void(const QPoint &)> moved; ///< the pointer, to that native position
        std::function<void(const QPoint &)> step;  ///< by keys, that many native pixels to the right and down
        std::function<void(int)> zoom;             ///< steps, positive towards larger
        std::function<void(Choice)> chosen;        ///< after Pick and Cancel only `ended` follows
        std::function<void()> ended;
    };

    X11LoupeInput(WatchConnection &connection, Handlers handlers);

    /// Moves the pointer; motion from before that is not told any more.
    void warpPointer(const QPoint &position);
    /// Server time of the last press or release of a button, if there was one.
    std::optional<quint32> lastButtonTime() const { return m_lastButtonTime; }

private:
    void handle(const xcb_generic_event_t &event);
    bool isOutdated(const xcb_generic_event_t &event) const;
    void handleButton(const xcb_button_press_event_t &press, bool isElsewhere);
    void handleKey(const xcb_key_press_event_t &press);
    void readKeyboard();
    xcb_keysym_t keysym(xcb_keycode_t key) const;
    void choose(Choice choice, int endingRelease);

    WatchConnection &m_connection;
    Handlers m_handlers;
    std::vector<xcb_keysym_t> m_keysyms; ///< first of each key code; empty: to be read
    xcb_keycode_t m_firstKey = 0;
    std::bitset<256> m_held; ///< keys; what was held before the loupe came chooses nothing
    unsigned int m_warp = 0; ///< number of the request
    bool m_hasWarped = false;
    std::optional<quint32> m_lastButtonTime;
    int m_endingRelease = 0; ///< key code, or minus the button; 0: nothing is chosen yet
    WatchConnection::Subscription m_subscription;
};

} // namespace ostrelle
