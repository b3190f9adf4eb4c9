#include "platform/x11/X11HotKeys.h"

#include "platform/x11/SelectionOwners.h"
#include "platform/x11/X11Keyboard.h"
#include "platform/x11/XcbReply.h"

#include <QApplication>
#include <QPointer>
#include <QWidget>

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::uint16_t kAllModifiers = 0xff; // beside them the state has buttons and the layout

/// Every state that the locks can be in, as modifiers of a grab.
std::vector<std::uint16_t> lockStates(const X11KeyboardMap &map)
{
    std::vector<std::uint16_t> states{0};
    for (const std::uint16_t lock : {std::uint16_t{XCB_MOD_MASK_LOCK}, map.numLockMask, map.scrollLockMask}) {
        if (std::find(states.begin(), states.end(), lock) != states.end()) {
            continue; // no modifier, or the same one
        }
        for (std::size_t i = 0, count = states.size(); i < count; ++i) {
            states.push_back(states[i] | lock);
        }
    }
    return states;
}

std::uint16_t modifierMask(Qt::KeyboardModifiers modifiers, const X11KeyboardMap &map)
{
    const std::initializer_list<std::pair<Qt::KeyboardModifier, std::uint16_t>> masks = {
        {Qt::ShiftModifier, XCB_MOD_MASK_SHIFT},
        {Qt::ControlModifier, XCB_MOD_MASK_CONTROL},
        {Qt::AltModifier, map.altMask},
        {Qt::MetaModifier, map.superMask}};
    std::uint16_t mask = 0;
    for (const auto &[modifier, bit] : masks) {
        if (modifiers.testFlag(modifier)) {
            mask |= bit;
        }
    }
    return mask;
}

} // namespace

X11HotKeys::X11HotKeys(WatchConnection &watch, X11Keyboard &keyboard, QObject *parent)
    : HotKeys(parent)
    , m_watch(watch)
    , m_keyboard(keyboard)
    , m_managerCheck(watch.atom("_NET_SUPPORTING_WM_CHECK"))
    , m_managerSelection(watch.atom(QByteArray("WM_S").append(QByteArray::number(watch.screenNumber())).constData()))
    , m_subscription(watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); }))
{
    if (const auto *input = xcb_get_extension_data(watch.xcb(), &xcb_input_id); input && input->present) {
        m_inputOpcode = input->major_opcode;
    }
    m_managerEvent = watchSelectionOwners(watch, m_managerSelection);
    connect(&keyboard, &X11Keyboard::mapChanged, this, &X11HotKeys::renew);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotKeys::~X11HotKeys() = default;

void X11HotKeys::set(const QList<HotKey> &keys)
{
    std::vector<Entry> before = std::exchange(m_entries, {});
    for (const HotKey &key : keys) {
        const auto same =
            std::find_if(before.begin(), before.end(), [&key](const Entry &entry) { return entry.key == key; });
        if (same == before.end()) {
            m_entries.push_back({key, grabsFor(key), false});
        } else {
            m_entries.push_back(std::move(*same));
            before.erase(same);
        }
    }
    // Given back first: the new set may have the same keys for something else.
    for (Entry &gone : before) {
        giveBack(gone);
    }
    grabMissing();
}

std::optional<HotKeys::State> X11HotKeys::state(int id) const
{
    const auto entry =
        std::find_if(m_entries.begin(), m_entries.end(), [id](const Entry &one) { return one.key.id == id; });
    if (entry == m_entries.end()) {
        return std::nullopt;
    }
    return entry->isGranted ? State::Granted : State::Refused;
}

void X11HotKeys::yieldKeyboard()
{
    if (m_heldKey) {
        xcb_ungrab_keyboard(m_watch.xcb(), XCB_CURRENT_TIME);
        m_watch.flush();
    }
}

std::vector<X11HotKeys::Grab> X11HotKeys::grabsFor(const HotKey &key) const
{
    const X11KeyboardMap &map = m_keyboard.map();
    const std::uint16_t modifiers = modifierMask(key.modifiers, map);
    std::vector<Grab> grabs;
    for (const xcb_keycode_t code : map.keys.value(key.keyCode)) {
        for (const std::uint16_t locks : lockStates(map)) {
            const Grab grab{code, static_cast<std::uint16_t>(modifiers | locks)};
            if (std::find(grabs.begin(), grabs.end(), grab) == grabs.end()) {
                grabs.push_back(grab);
            }
        }
    }
    return grabs;
}

bool X11HotKeys::grab(const Entry &entry)
{
    // The server would hand the same keys out twice, and take them back for both.
    const bool isOurs = std::any_of(m_entries.begin(), m_entries.end(), [&entry](const Entry &other) {
        return &other != &entry && other.isGranted && other.grabs == entry.grabs;
    });
    if (isOurs || entry.grabs.empty()) {
        return false;
    }
    std::vector<xcb_void_cookie_t> cookies;
    for (const Grab &grab : entry.grabs) {
        cookies.push_back(xcb_grab_key_checked(m_watch.xcb(), 1, m_watch.root(), grab.modifiers, grab.key,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool isRefused = false;
    for (const xcb_void_cookie_t cookie : cookies) { // one round trip for all
        const XcbReply<xcb_generic_error_t> error(xcb_request_check(m_watch.xcb(), cookie));
        isRefused = isRefused || error;
    }
    if (isRefused) {
        ungrab(entry.grabs);
    }
    return !isRefused;
}

void X11HotKeys::ungrab(const std::vector<Grab> &grabs)
{
    for (const Grab &grab : grabs) {
        xcb_ungrab_key(m_watch.xcb(), grab.key, m_watch.root(), grab.modifiers);
    }
}

void X11HotKeys::giveBack(Entry &entry)
{
    if (std::exchange(entry.isGranted, false)) {
        ungrab(entry.grabs);
    }
}

void X11HotKeys::grabMissing()
{
    for (Entry &entry : m_entries) {
        entry.isGranted = entry.isGranted || grab(entry);
    }
    m_watch.flush();
}

void X11HotKeys::renew()
{
    QMap<int, bool> before;
    for (Entry &entry : m_entries) {
        before[entry.key.id] = entry.isGranted;
        if (std::vector<Grab> grabs = grabsFor(entry.key); grabs != entry.grabs) {
            giveBack(entry);
            entry.grabs = std::move(grabs);
        }
    }
    grabMissing();
    QList<int> changed;
    for (const Entry &entry : m_entries) {
        if (entry.isGranted != before[entry.key.id]) {
            changed.append(entry.key.id);
        }
    }
    for (const int id : changed) { // whoever hears of it may set others
        Q_EMIT stateChanged(id);
    }
}

void X11HotKeys::handle(const xcb_generic_event_t &event)
{
    const int type = event.response_type & 0x7f;
    if (type == XCB_KEY_PRESS) {
        keyPressed(reinterpret_cast<const xcb_key_press_event_t &>(event));
    } else if (type == XCB_KEY_RELEASE) {
        keyReleased(reinterpret_cast<const xcb_key_release_event_t &>(event).detail);
    } else if (type == XCB_GE_GENERIC) {
        const auto &generic = reinterpret_cast<const xcb_ge_generic_event_t &>(event);
        if (generic.extension == m_inputOpcode && generic.event_type == XCB_INPUT_RAW_KEY_RELEASE) {
            keyReleased(reinterpret_cast<const xcb_input_raw_key_release_event_t &>(event).detail);
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        // A window manager has come, or its successor.
        const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
        if (notify.window == m_watch.root() && notify.atom == m_managerCheck) {
            renew();
        }
    } else if (m_managerEvent && type == m_managerEvent) {
        const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
        if (notify.selection == m_managerSelection) {
            renew();
        }
    }
}

bool X11HotKeys::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    // While a menu is open the toolkit has the keyboard, and the server hands out no hot keys.
    if (eventType != "xcb_generic_event_t" || !QApplication::activePopupWidget()) {
        return false;
    }
    const auto &event = *static_cast<const xcb_key_press_event_t *>(message);
    if ((event.response_type & 0x7f) != XCB_KEY_PRESS || !hotKeyOf(event)) {
        return false;
    }
    QWidget *popup = QApplication::activePopupWidget();
    while (popup && popup->close()) {
        popup = QApplication::activePopupWidget();
    }
    keyPressed(event);
    return true;
}

const HotKey *X11HotKeys::hotKeyOf(const xcb_key_press_event_t &press) const
{
    const Grab pressed{press.detail, static_cast<std::uint16_t>(press.state & kAllModifiers)};
    const auto entry = std::find_if(m_entries.begin(), m_entries.end(), [&pressed](const Entry &one) {
        return one.isGranted && std::find(one.grabs.begin(), one.grabs.end(), pressed) != one.grabs.end();
    });
    return entry == m_entries.end() ? nullptr : &entry->key;
}

void X11HotKeys::keyPressed(const xcb_key_press_event_t &press)
{
    const HotKey *key = press.detail == m_heldKey ? nullptr : hotKeyOf(press);
    if (!key) {
        return;
    }
    m_heldKey = press.detail;
    watchReleases(true);
    QMetaObject::invokeMethod(
        this, [this, id = key->id, token = ActivationToken{QString::number(press.time)}] { Q_EMIT pressed(id, token); },
        Qt::QueuedConnection);
}

void X11HotKeys::keyReleased(std::uint32_t key)
{
    if (m_heldKey && key == m_heldKey) {
        m_heldKey = 0;
        watchReleases(false);
    }
}

void X11HotKeys::watchReleases(bool on)
{
    if (!m_inputOpcode) {
        return;
    }
    constexpr std::uint32_t kReleases = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE;
    // Not of the master devices, whose events another part of the backend selects.
    struct
    {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const request{{XCB_INPUT_DEVICE_ALL, 1}, on ? kReleases : 0U};
    xcb_input_xi_select_events(m_watch.xcb(), m_watch.root(), 1, &request.head);
    if (!on) {
        m_watch.flush();
        return;
    }
    // It may have been released before they were selected.
    m_watch.whenReplied(xcb_query_keymap(m_watch.xcb()).sequence,
                        [self = QPointer<X11HotKeys>(this), key = m_heldKey](const void *reply) {
                            const auto *down = static_cast<const xcb_query_keymap_reply_t *>(reply);
                            if (self && down && !(down->keys[key / 8] & (1 << (key % 8)))) {
                                self->keyReleased(key);
                            }
                        });
}

} // namespace ostrelle
