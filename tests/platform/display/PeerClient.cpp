#include "PeerClient.h"

#include "Waiting.h"
#include "platform/x11/ToolkitConnection.h"
#include "platform/x11/XcbReply.h"

#include <QTest>

#include <algorithm>
#include <cstring>

#include <xcb/shape.h>
#include <xcb/xtest.h>

namespace ostrelle {

namespace {

/// The server may serve connections in any order: what the program has asked for so far comes before what the user
/// does.
void letTheProgramGoFirst()
{
    xcb_connection_t *toolkit = toolkitConnection();
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(toolkit, xcb_get_input_focus(toolkit), nullptr));
}

} // namespace

PeerClient::PeerClient()
    : m_connection(xcb_connect(nullptr, nullptr))
    , m_screen(xcb_setup_roots_iterator(xcb_get_setup(m_connection.get())).data)
{
}

PeerClient::~PeerClient()
{
    // The next client gets the same window numbers: the window manager must have forgotten these before.
    for (const xcb_window_t window : std::as_const(m_managed)) {
        xcb_destroy_window(xcb(), window);
    }
    if (!m_managed.isEmpty()) {
        synchronize();
        letTheWindowManagerFinish();
    }
}

xcb_atom_t PeerClient::atom(const char *name)
{
    const auto cookie = xcb_intern_atom(xcb(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb(), cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void PeerClient::synchronize()
{
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb(), xcb_get_input_focus(xcb()), nullptr));
}

void PeerClient::readEvents()
{
    synchronize();
    const int shapeNotify = xcb_get_extension_data(xcb(), &xcb_shape_id)->first_event + XCB_SHAPE_NOTIFY;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(xcb())}) {
        const int type = event->response_type & 0x7f;
        if (type == XCB_BUTTON_PRESS) {
            ++m_presses[reinterpret_cast<const xcb_button_press_event_t &>(*event).event];
        } else if (type == shapeNotify) {
            const auto &told = reinterpret_cast<const xcb_shape_notify_event_t &>(*event);
            m_toldHeight =
                told.shape_kind == XCB_SHAPE_SK_BOUNDING && !told.shaped ? told.extents_height : m_toldHeight;
        }
    }
}

xcb_window_t PeerClient::createHelperWindow()
{
    const xcb_window_t window = xcb_generate_id(xcb());
    xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, window, root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    return window;
}

void PeerClient::askForFrameExtents(xcb_window_t window)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_REQUEST_FRAME_EXTENTS");
    xcb_send_event(xcb(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
}

bool PeerClient::waitForWindowManager()
{
    // One that is starting announces itself before it listens, and loses what it is asked meanwhile: ask again.
    const xcb_window_t window = createHelperWindow();
    const bool isThere = QTest::qWaitFor(
        [&] {
            askForFrameExtents(window);
            return hasProperty(window, "_NET_FRAME_EXTENTS");
        },
        30'000);
    xcb_destroy_window(xcb(), window);
    synchronize();
    return isThere;
}

void PeerClient::letTheWindowManagerFinish()
{
    // It serves requests in order, and answers this one also about a window that is not mapped (EWMH 1.5).
    const xcb_window_t window = createHelperWindow();
    askForFrameExtents(window);
    waitUntil("the window manager answers", [&] { return hasProperty(window, "_NET_FRAME_EXTENTS"); });
    xcb_destroy_window(xcb(), window);
    synchronize();
}

xcb_window_t PeerClient::open(const QRect &frame, Kind kind, const QByteArray &name)
{
    const xcb_window_t window = xcb_generate_id(xcb());
    const std::uint32_t values[] = {m_screen->white_pixel, kind == Kind::OverrideRedirect,
                                    XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, window, root(), static_cast<std::int16_t>(frame.x()),
                      static_cast<std::int16_t>(frame.y()), static_cast<std::uint16_t>(frame.width()),
                      static_cast<std::uint16_t>(frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    const QByteArray windowClass = name + '\0' + name + '\0';
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(windowClass.size()), windowClass.constData());
    if (kind == Kind::Dialog) {
        const xcb_atom_t dialog = atom("_NET_WM_WINDOW_TYPE_DIALOG");
        xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1,
                            &dialog);
    }
    if (kind != Kind::OverrideRedirect) {
        m_managed.append(window);
    }
    xcb_map_window(xcb(), window);
    waitUntil("a window is mapped", [&] {
        const auto cookie = xcb_get_window_attributes(xcb(), window);
        const XcbReply<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(xcb(), cookie, nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    });
    letTheWindowManagerFinish();
    return window;
}

void PeerClient::paint(xcb_window_t window, const QImage &image)
{
    const QImage plain = image.convertToFormat(QImage::Format_RGB32);
    const xcb_pixmap_t pixmap = xcb_generate_id(xcb());
    const xcb_gcontext_t context = xcb_generate_id(xcb());
    const auto width = static_cast<std::uint16_t>(plain.width());
    const auto height = static_cast<std::uint16_t>(plain.height());
    xcb_create_pixmap(xcb(), m_screen->root_depth, pixmap, root(), width, height);
    xcb_create_gc(xcb(), context, pixmap, 0, nullptr);
    xcb_put_image(xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, height, 0, 0, 0, m_screen->root_depth,
                  static_cast<std::uint32_t>(plain.sizeInBytes()), plain.constBits());
    const std::uint32_t background = pixmap;
    xcb_change_window_attributes(xcb(), window, XCB_CW_BACK_PIXMAP, &background);
    xcb_clear_area(xcb(), 0, window, 0, 0, 0, 0);
    xcb_free_gc(xcb(), context);
    xcb_free_pixmap(xcb(), pixmap);
    synchronize();
}

void PeerClient::killOwnerOfTopmost()
{
    const XcbReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), root()), nullptr));
    xcb_kill_client(xcb(), xcb_query_tree_children(tree.get())[xcb_query_tree_children_length(tree.get()) - 1]);
    synchronize();
}

void PeerClient::close(xcb_window_t window)
{
    m_managed.removeAll(window);
    xcb_destroy_window(xcb(), window);
    synchronize();
    letTheWindowManagerFinish();
}

void PeerClient::activate(xcb_window_t window)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2; // from a pager
    xcb_send_event(xcb(), 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&message));
    waitUntil("a window is active", [&] { return activeWindow() == window; });
    letTheWindowManagerFinish();
}

xcb_window_t PeerClient::openTopBar(int height, int fromX, int toX)
{
    const xcb_window_t window = xcb_generate_id(xcb());
    const std::uint32_t pixel = m_screen->black_pixel;
    xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, window, root(), static_cast<std::int16_t>(fromX), 0,
                      static_cast<std::uint16_t>(toX - fromX + 1), static_cast<std::uint16_t>(height), 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &pixel);
    const xcb_atom_t dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
    setWords(window, "_NET_WM_STRUT_PARTIAL",
             {0, 0, static_cast<std::uint32_t>(height), 0, 0, 0, 0, 0, static_cast<std::uint32_t>(fromX),
              static_cast<std::uint32_t>(toX), 0, 0});
    m_managed.append(window);
    xcb_map_window(xcb(), window);
    synchronize();
    return window;
}

void PeerClient::ownSelection(const char *name)
{
    const xcb_window_t owner = xcb_generate_id(xcb());
    xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, owner, root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(xcb(), owner, atom(name), XCB_CURRENT_TIME);
    synchronize();
}

void PeerClient::movePointer(const QPoint &native)
{
    letTheProgramGoFirst();
    xcb_test_fake_input(xcb(), XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root(), static_cast<std::int16_t>(native.x()),
                        static_cast<std::int16_t>(native.y()), 0);
    synchronize();
}

void PeerClient::button(bool down, int number)
{
    letTheProgramGoFirst();
    xcb_test_fake_input(xcb(), down ? XCB_BUTTON_PRESS : XCB_BUTTON_RELEASE, static_cast<std::uint8_t>(number),
                        XCB_CURRENT_TIME, root(), 0, 0, 0);
    synchronize();
}

void PeerClient::click(int number)
{
    button(true, number);
    button(false, number);
}

void PeerClient::key(xcb_keysym_t keysym)
{
    key(keysym, /*down=*/true);
    key(keysym, /*down=*/false);
}

void PeerClient::key(xcb_keysym_t keysym, bool down)
{
    letTheProgramGoFirst();
    const xcb_setup_t *setup = xcb_get_setup(xcb());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const auto cookie = xcb_get_keyboard_mapping(xcb(), setup->min_keycode, count);
    const XcbReply<xcb_get_keyboard_mapping_reply_t> map(xcb_get_keyboard_mapping_reply(xcb(), cookie, nullptr));
    const xcb_keysym_t *symbols = xcb_get_keyboard_mapping_keysyms(map.get());
    for (int i = 0; i < count; ++i) {
        if (symbols[i * map->keysyms_per_keycode] == keysym) {
            xcb_test_fake_input(xcb(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE,
                                static_cast<std::uint8_t>(setup->min_keycode + i), XCB_CURRENT_TIME, root(), 0, 0, 0);
            synchronize();
            return;
        }
    }
}

int PeerClient::pressCount(xcb_window_t window)
{
    readEvents();
    return m_presses.value(window);
}

void PeerClient::setFocus(xcb_window_t window)
{
    xcb_set_input_focus(xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    synchronize();
}

xcb_window_t PeerClient::focus()
{
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(xcb(), xcb_get_input_focus(xcb()), nullptr));
    return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t PeerClient::activeWindow()
{
    const auto cookie = xcb_get_property(xcb(), 0, root(), atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 0, 1);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb(), cookie, nullptr));
    const auto words = propertyWords(reply.get());
    return words.empty() ? xcb_window_t{XCB_WINDOW_NONE} : words.front();
}

QByteArray PeerClient::propertyName(xcb_window_t window, const char *property)
{
    const auto cookie = xcb_get_property(xcb(), 0, window, atom(property), XCB_ATOM_ATOM, 0, 1);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb(), cookie, nullptr));
    const auto words = propertyWords(reply.get());
    if (words.empty()) {
        return {};
    }
    const XcbReply<xcb_get_atom_name_reply_t> name(
        xcb_get_atom_name_reply(xcb(), xcb_get_atom_name(xcb(), words.front()), nullptr));
    return QByteArray(xcb_get_atom_name_name(name.get()), xcb_get_atom_name_name_length(name.get()));
}

bool PeerClient::hasProperty(xcb_window_t window, const char *property)
{
    const auto cookie = xcb_get_property(xcb(), 0, window, atom(property), XCB_ATOM_ANY, 0, 0);
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb(), cookie, nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

xcb_window_t PeerClient::topLevel(xcb_window_t window)
{
    for (;;) {
        const XcbReply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), window), nullptr));
        if (!tree || tree->parent == root()) {
            return window;
        }
        window = tree->parent;
    }
}

bool PeerClient::isAbove(xcb_window_t one, xcb_window_t other)
{
    const XcbReply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(xcb(), xcb_query_tree(xcb(), root()), nullptr));
    const xcb_window_t *bottom = xcb_query_tree_children(tree.get());
    const xcb_window_t *end = bottom + xcb_query_tree_children_length(tree.get());
    return std::find(bottom, end, topLevel(one)) > std::find(bottom, end, topLevel(other));
}

QRect PeerClient::boundingExtents(xcb_window_t window)
{
    const XcbReply<xcb_shape_query_extents_reply_t> reply(
        xcb_shape_query_extents_reply(xcb(), xcb_shape_query_extents(xcb(), window), nullptr));
    return reply ? QRect(reply->bounding_shape_extents_x, reply->bounding_shape_extents_y,
                         reply->bounding_shape_extents_width, reply->bounding_shape_extents_height)
                 : QRect();
}

void PeerClient::watchShape(xcb_window_t window)
{
    xcb_shape_select_input(xcb(), window, 1);
    synchronize();
}

int PeerClient::toldHeight()
{
    readEvents();
    return m_toldHeight;
}

QRect PeerClient::frame(xcb_window_t window)
{
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(xcb(), xcb_get_geometry(xcb(), window), nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(xcb(), xcb_translate_coordinates(xcb(), window, root(), 0, 0), nullptr));
    return size && origin ? QRect(origin->dst_x, origin->dst_y, size->width, size->height) : QRect();
}

bool PeerClient::hasOwner(const char *selection)
{
    const auto cookie = xcb_get_selection_owner(xcb(), atom(selection));
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(xcb(), cookie, nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

QRgb PeerClient::pixel(const QPoint &native)
{
    const auto cookie = xcb_get_image(xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<std::int16_t>(native.x()),
                                      static_cast<std::int16_t>(native.y()), 1, 1, ~0U);
    const XcbReply<xcb_get_image_reply_t> reply(xcb_get_image_reply(xcb(), cookie, nullptr));
    std::uint32_t pixel = 0;
    if (reply) {
        std::memcpy(&pixel, xcb_get_image_data(reply.get()), sizeof pixel);
    }
    return pixel | 0xff000000U;
}

void PeerClient::setWords(xcb_window_t window, const char *property, std::initializer_list<std::uint32_t> words)
{
    xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, window, atom(property), XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(words.size()), words.begin());
    synchronize();
}

void PeerClient::remove(xcb_window_t window, const char *property)
{
    xcb_delete_property(xcb(), window, atom(property));
    synchronize();
}

bool PeerClient::grabKeyboard()
{
    const auto cookie = xcb_grab_keyboard(xcb(), 0, root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const XcbReply<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(xcb(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void PeerClient::releaseKeyboard()
{
    xcb_ungrab_keyboard(xcb(), XCB_CURRENT_TIME);
    synchronize();
}

bool PeerClient::grabPointer()
{
    const auto cookie = xcb_grab_pointer(xcb(), 0, root(), 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE,
                                         XCB_CURSOR_NONE, XCB_CURRENT_TIME);
    const XcbReply<xcb_grab_pointer_reply_t> reply(xcb_grab_pointer_reply(xcb(), cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

void PeerClient::releasePointer()
{
    xcb_ungrab_pointer(xcb(), XCB_CURRENT_TIME);
    synchronize();
}

} // namespace ostrelle
