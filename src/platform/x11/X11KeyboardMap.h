#pragma once

#include <QMap>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

#include <xcb/xcb.h>

namespace ostrelle {

/// What the server's keyboard map says about places, names and modifiers: a value, read in one go.
struct X11KeyboardMap
{
    /// Virtual key code to the X key codes at its place.
    QMap<quint32, std::vector<xcb_keycode_t>> keys;
    /// Of each layout (group) the names of the keys that carry a character; nothing for a layout without Latin letters.
    std::vector<std::optional<QMap<quint32, QString>>> layouts;
    std::size_t currentLayout = 0;
    // Modifier bits. The first two are always there, a lock that is no modifier is 0.
    std::uint16_t superMask = XCB_MOD_MASK_4;
    std::uint16_t altMask = XCB_MOD_MASK_1;
    std::uint16_t numLockMask = 0;
    std::uint16_t scrollLockMask = 0;

    /// Several round trips. Nothing when the server has no keyboard extension.
    static std::optional<X11KeyboardMap> read(xcb_connection_t *connection);
    /// On a connection of its own; a US board's names where there is none.
    static QMap<quint32, QString> namesWithoutPlatform();

    /// The names of the current layout. Where that has no Latin letters: of `before`, else of the first one that has
    /// some, else of a US board.
    QMap<quint32, QString> names(std::optional<std::size_t> before) const;
    /// Whether the current layout has Latin letters.
    bool isCurrentLatin() const;
    std::optional<quint32> virtualKeyAt(xcb_keycode_t key) const;
};

} // namespace ostrelle
