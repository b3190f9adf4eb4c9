#include "PeerKeyboard.h"

#include "Waiting.h"
#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/XcbReply.h"

#include <QMap>
#include <QProcess>
#include <QTest>

#include <array>
#include <cstring>
#include <utility>

#include <xcb/xtest.h>

namespace ostrelle {

namespace {

struct ModifierKey
{
    Qt::KeyboardModifier modifier;
    xcb_keycode_t key;
    std::uint16_t mask;
};

constexpr std::array<ModifierKey, 4> kModifiers = {{{Qt::ControlModifier, 37, XCB_MOD_MASK_CONTROL},
                                                    {Qt::AltModifier, 64, XCB_MOD_MASK_1},
                                                    {Qt::ShiftModifier, 50, XCB_MOD_MASK_SHIFT},
                                                    {Qt::MetaModifier, 133, XCB_MOD_MASK_4}}};

} // namespace

PeerKeyboard::PeerKeyboard()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data->root)
{
}

PeerKeyboard::~PeerKeyboard()
{
    release();
}

xcb_keycode_t PeerKeyboard::keyAt(quint32 keyCode)
{
    // As the Linux kernel numbers the keys of a PC board, plus 8.
    static const QMap<quint32, xcb_keycode_t> kKeys{{0, 38}, {1, 39}, {6, 52}, {8, 54}, {9, 55}, {12, 24}, {49, 65}};
    return kKeys.value(keyCode);
}

void PeerKeyboard::fake(std::uint8_t type, xcb_keycode_t key)
{
    xcb_test_fake_input(m_connection.get(), type, key, XCB_CURRENT_TIME, m_root, 0, 0, 0);
    synchronize();
}

void PeerKeyboard::synchronize()
{
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
}

void PeerKeyboard::hold(quint32 keyCode, Qt::KeyboardModifiers modifiers)
{
    for (const ModifierKey &row : kModifiers) {
        if (modifiers.testFlag(row.modifier)) {
            m_held.push_back(row.key);
        }
    }
    m_held.push_back(keyAt(keyCode));
    for (const xcb_keycode_t key : m_held) {
        fake(XCB_KEY_PRESS, key);
    }
}

xcb_timestamp_t PeerKeyboard::serverTime()
{
    // The server stamps the change of a property.
    const xcb_window_t window = xcb_generate_id(m_connection.get());
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection.get(), 0, window, m_root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 1,
                        "t");
    xcb_destroy_window(m_connection.get(), window);
    xcb_flush(m_connection.get());
    while (const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection.get())}) {
        if ((event->response_type & 0x7f) == XCB_PROPERTY_NOTIFY) {
            return reinterpret_cast<const xcb_property_notify_event_t &>(*event).time;
        }
    }
    return 0;
}

void PeerKeyboard::letItRepeat()
{
    // Repeats by default after 660 ms, then every 40.
    constexpr xcb_timestamp_t kSeveralTimes = 1000;
    const xcb_timestamp_t begin = serverTime();
    waitUntil("the key is repeated", [this, begin] { return serverTime() - begin > kSeveralTimes; });
}

void PeerKeyboard::release()
{
    while (!m_held.empty()) {
        fake(XCB_KEY_RELEASE, m_held.back());
        m_held.pop_back();
    }
}

void PeerKeyboard::press(quint32 keyCode, Qt::KeyboardModifiers modifiers)
{
    hold(keyCode, modifiers);
    release();
}

void PeerKeyboard::tap(xcb_keycode_t key)
{
    fake(XCB_KEY_PRESS, key);
    fake(XCB_KEY_RELEASE, key);
}

void PeerKeyboard::grab(quint32 keyCode, Qt::KeyboardModifiers modifiers)
{
    std::uint16_t mask = 0;
    for (const ModifierKey &row : kModifiers) {
        mask |= modifiers.testFlag(row.modifier) ? row.mask : std::uint16_t{0};
    }
    xcb_grab_key(m_connection.get(), 0, m_root, mask, keyAt(keyCode), XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    synchronize();
}

bool PeerKeyboard::grabAll()
{
    const auto cookie =
        xcb_grab_keyboard(m_connection.get(), 0, m_root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(m_connection.get(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void PeerKeyboard::ungrabAll()
{
    xcb_ungrab_keyboard(m_connection.get(), XCB_CURRENT_TIME);
    synchronize();
}

void PeerKeyboard::announceWindowManager()
{
    const char *name = "_NET_SUPPORTING_WM_CHECK";
    const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        m_connection.get(), xcb_intern_atom(m_connection.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    xcb_change_property(m_connection.get(), XCB_PROP_MODE_APPEND, m_root, atom->atom, XCB_ATOM_WINDOW, 32, 0, nullptr);
    synchronize();
}

void PeerKeyboard::setMap(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished() || process.exitCode() != 0) {
        QTest::qFail(qPrintable(program + QStringLiteral(" failed")), __FILE__, __LINE__);
    }
}

} // namespace ostrelle
