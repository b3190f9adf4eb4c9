#include "platform/x11/X11KeyboardMap.h"

#include "platform/x11/AnsiKeys.h"
#include "platform/x11/XcbReply.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

namespace ostrelle {

namespace {

struct XkbFreed
{
    void operator()(xkb_context *context) const { xkb_context_unref(context); }
    void operator()(xkb_keymap *keymap) const { xkb_keymap_unref(keymap); }
    void operator()(xkb_state *state) const { xkb_state_unref(state); }
};
using XkbContext = std::unique_ptr<xkb_context, XkbFreed>;
using XkbKeymap = std::unique_ptr<xkb_keymap, XkbFreed>;
using XkbState = std::unique_ptr<xkb_state, XkbFreed>;

XkbContext makeContext(xkb_context_flags flags)
{
    XkbContext context(xkb_context_new(flags));
    if (context) {
        xkb_context_set_log_level(context.get(), XKB_LOG_LEVEL_CRITICAL); // it complains about ordinary maps
    }
    return context;
}

/// The signs that stand alone on keys whose accent waits for a letter.
constexpr auto kDeadKeys = std::to_array<std::pair<xkb_keysym_t, char16_t>>({
    {XKB_KEY_dead_grave, u'`'},
    {XKB_KEY_dead_acute, u'´'},
    {XKB_KEY_dead_circumflex, u'^'},
    {XKB_KEY_dead_tilde, u'~'},
    {XKB_KEY_dead_macron, u'¯'},
    {XKB_KEY_dead_breve, u'˘'},
    {XKB_KEY_dead_abovedot, u'˙'},
    {XKB_KEY_dead_diaeresis, u'¨'},
    {XKB_KEY_dead_abovering, u'˚'},
    {XKB_KEY_dead_doubleacute, u'˝'},
    {XKB_KEY_dead_caron, u'ˇ'},
    {XKB_KEY_dead_cedilla, u'¸'},
    {XKB_KEY_dead_ogonek, u'˛'},
});

QString printedBy(xkb_keysym_t symbol)
{
    const auto dead =
        std::find_if(kDeadKeys.begin(), kDeadKeys.end(), [symbol](const auto &row) { return row.first == symbol; });
    if (dead != kDeadKeys.end()) {
        return QChar(dead->second);
    }
    const char32_t character = xkb_keysym_to_utf32(symbol);
    const bool isSeen = character > U' ' && QChar::isPrint(character);
    return isSeen ? QString::fromUcs4(&character, 1).toUpper() : QString();
}

QString nameOf(xkb_keymap *keymap, xkb_keycode_t key, xkb_layout_index_t layout)
{
    constexpr xkb_level_index_t kPlainAndKeypad = 2; // keypad digits are one level up
    for (xkb_level_index_t level = 0; level < kPlainAndKeypad; ++level) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, level, &symbols);
        if (QString name = count == 1 ? printedBy(symbols[0]) : QString(); !name.isEmpty()) {
            return name;
        }
    }
    return {};
}

bool isLatin(const QMap<quint32, QString> &names)
{
    constexpr int kNearlyAllLetters = 20;
    return std::count_if(names.begin(), names.end(), [](const QString &name) {
               return name.size() == 1 && name.front() >= u'A' && name.front() <= u'Z';
           }) >= kNearlyAllLetters;
}

std::optional<QMap<quint32, QString>> latinNames(xkb_keymap *keymap, xkb_layout_index_t layout)
{
    QMap<quint32, QString> names;
    for (const AnsiKey &key : allAnsiKeys()) {
        const xkb_keycode_t code = xkb_keymap_key_by_name(keymap, key.xkbName);
        if (code == XKB_KEYCODE_INVALID || names.contains(key.keyCode)) {
            continue;
        }
        if (const QString name = nameOf(keymap, code, layout); !name.isEmpty()) {
            names.insert(key.keyCode, name);
        }
    }
    return isLatin(names) ? std::optional(std::move(names)) : std::nullopt;
}

bool carries(xkb_keymap *keymap, xkb_keycode_t key, xkb_keysym_t symbol)
{
    const xkb_layout_index_t layouts = xkb_keymap_num_layouts_for_key(keymap, key);
    for (xkb_layout_index_t layout = 0; layout < layouts; ++layout) {
        const xkb_keysym_t *symbols = nullptr;
        const int count = xkb_keymap_key_get_syms_by_level(keymap, key, layout, 0, &symbols);
        if (std::find(symbols, symbols + count, symbol) != symbols + count) {
            return true;
        }
    }
    return false;
}

/// Which of Mod1 to Mod5 the keys with this symbol set.
class ModifierKeys
{
public:
    ModifierKeys(xcb_connection_t *connection, xkb_keymap *keymap)
        : m_keymap(keymap)
        , m_reply(xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr))
    {
    }

    std::uint16_t maskOf(xkb_keysym_t symbol) const
    {
        constexpr int kFirst = 3; // after Shift, Lock and Control
        constexpr int kCount = 8;
        if (!m_reply) {
            return 0;
        }
        const int width = m_reply->keycodes_per_modifier;
        const xcb_keycode_t *codes = xcb_get_modifier_mapping_keycodes(m_reply.get());
        for (int modifier = kFirst; modifier < kCount; ++modifier) {
            const xcb_keycode_t *row = codes + modifier * width;
            if (std::any_of(row, row + width,
                            [&](xcb_keycode_t code) { return code && carries(m_keymap, code, symbol); })) {
                return static_cast<std::uint16_t>(1 << modifier);
            }
        }
        return 0;
    }

private:
    xkb_keymap *m_keymap;
    XcbReply<xcb_get_modifier_mapping_reply_t> m_reply;
};

std::uint16_t firstOf(std::initializer_list<std::uint16_t> masks)
{
    return *std::find_if(masks.begin(), masks.end() - 1, [](std::uint16_t mask) { return mask != 0; });
}

QMap<quint32, QString> namesOfUsBoard()
{
    const XkbContext context = makeContext(XKB_CONTEXT_NO_FLAGS);
    xkb_rule_names names{};
    names.layout = "us";
    const XkbKeymap keymap(context ? xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS)
                                   : nullptr);
    return keymap ? latinNames(keymap.get(), 0).value_or(QMap<quint32, QString>()) : QMap<quint32, QString>();
}

} // namespace

std::optional<X11KeyboardMap> X11KeyboardMap::read(xcb_connection_t *connection)
{
    if (!xkb_x11_setup_xkb_extension(connection, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr, nullptr)) {
        return std::nullopt;
    }
    const XkbContext context = makeContext(XKB_CONTEXT_NO_DEFAULT_INCLUDES);
    const int device = xkb_x11_get_core_keyboard_device_id(connection);
    const XkbKeymap keymap(
        context ? xkb_x11_keymap_new_from_device(context.get(), connection, device, XKB_KEYMAP_COMPILE_NO_FLAGS)
                : nullptr);
    const XkbState state(keymap ? xkb_x11_state_new_from_device(keymap.get(), connection, device) : nullptr);
    if (!state) {
        return std::nullopt;
    }
    X11KeyboardMap map;
    for (const AnsiKey &key : allAnsiKeys()) {
        if (const xkb_keycode_t code = xkb_keymap_key_by_name(keymap.get(), key.xkbName);
            code != XKB_KEYCODE_INVALID && code <= 0xff) {
            map.keys[key.keyCode].push_back(static_cast<xcb_keycode_t>(code));
        }
    }
    for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts(keymap.get()); ++layout) {
        map.layouts.push_back(latinNames(keymap.get(), layout));
    }
    map.currentLayout = xkb_state_serialize_layout(state.get(), XKB_STATE_LAYOUT_LOCKED);
    const ModifierKeys modifiers(connection, keymap.get());
    map.superMask = firstOf({modifiers.maskOf(XKB_KEY_Super_L), modifiers.maskOf(XKB_KEY_Super_R), XCB_MOD_MASK_4});
    map.altMask = firstOf({modifiers.maskOf(XKB_KEY_Alt_L), modifiers.maskOf(XKB_KEY_Alt_R), XCB_MOD_MASK_1});
    map.numLockMask = modifiers.maskOf(XKB_KEY_Num_Lock);
    map.scrollLockMask = modifiers.maskOf(XKB_KEY_Scroll_Lock);
    return map;
}

QMap<quint32, QString> X11KeyboardMap::namesWithoutPlatform()
{
    struct Disconnected
    {
        void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
    };
    const std::unique_ptr<xcb_connection_t, Disconnected> connection(xcb_connect(nullptr, nullptr));
    if (!xcb_connection_has_error(connection.get())) {
        if (const auto map = read(connection.get())) {
            return map->names(std::nullopt);
        }
    }
    return namesOfUsBoard();
}

QMap<quint32, QString> X11KeyboardMap::names(std::optional<std::size_t> before) const
{
    const auto isLatinAt = [this](std::size_t layout) { return layout < layouts.size() && layouts[layout]; };
    if (isLatinAt(currentLayout)) {
        return *layouts[currentLayout];
    }
    if (before && isLatinAt(*before)) {
        return *layouts[*before];
    }
    const auto first = std::find_if(layouts.begin(), layouts.end(), [](const auto &layout) { return layout; });
    return first != layouts.end() ? **first : namesOfUsBoard();
}

bool X11KeyboardMap::isCurrentLatin() const
{
    return currentLayout < layouts.size() && layouts[currentLayout];
}

std::optional<quint32> X11KeyboardMap::virtualKeyAt(xcb_keycode_t key) const
{
    for (auto place = keys.begin(); place != keys.end(); ++place) {
        if (std::find(place->begin(), place->end(), key) != place->end()) {
            return place.key();
        }
    }
    return std::nullopt;
}

} // namespace ostrelle
