#include "platform/x11/X11DialogStacking.h"

#include "platform/x11/XcbReply.h"

#include <QPointer>

#include <algorithm>
#include <span>

namespace ostrelle {

namespace {

/// Of frames in frames; the bound only ends the search in a tree that keeps changing.
constexpr int kMostFrames = 8;

std::span<const xcb_window_t> childrenIn(const void *reply)
{
    const auto *tree = static_cast<const xcb_query_tree_reply_t *>(reply);
    if (!tree) {
        return {};
    }
    return {xcb_query_tree_children(tree), static_cast<std::size_t>(xcb_query_tree_children_length(tree))};
}

} // namespace

X11DialogStacking::X11DialogStacking(WatchConnection &watch, QObject *parent)
    : QObject(parent)
    , m_watch(watch)
    , m_activeWindow(watch.atom("_NET_ACTIVE_WINDOW"))
{
}

void X11DialogStacking::setOn(bool on)
{
    if (m_isOn == on) {
        return;
    }
    m_isOn = on;
    m_subscription = on ? m_watch.onEvent([this](const xcb_generic_event_t &event) { handle(event); })
                        : WatchConnection::Subscription();
}

void X11DialogStacking::handle(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_property_notify_event_t &>(event);
    if (notify.window == m_watch.root() && notify.atom == m_activeWindow) {
        askForActiveWindow();
    }
}

void X11DialogStacking::askForActiveWindow()
{
    const auto cookie = xcb_get_property(m_watch.xcb(), 0, m_watch.root(), m_activeWindow, XCB_ATOM_WINDOW, 0, 1);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11DialogStacking>(this)](const void *reply) {
        const auto windows = propertyWords(static_cast<const xcb_get_property_reply_t *>(reply));
        if (self && !windows.empty() && windows.front() != XCB_WINDOW_NONE) {
            self->askForType(windows.front());
        }
    });
}

void X11DialogStacking::askForType(xcb_window_t window)
{
    const xcb_atom_t dialog = m_watch.atom("_NET_WM_WINDOW_TYPE_DIALOG");
    const auto cookie =
        xcb_get_property(m_watch.xcb(), 0, window, m_watch.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 0, 16);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11DialogStacking>(this), window, dialog](const void *reply) {
        const auto types = propertyWords(static_cast<const xcb_get_property_reply_t *>(reply));
        if (!self) {
            return;
        }
        if (std::find(types.begin(), types.end(), dialog) != types.end()) {
            self->askForFrame(window, 0);
        } else {
            self->stack(XCB_STACK_MODE_ABOVE, XCB_WINDOW_NONE);
        }
    });
}

void X11DialogStacking::askForFrame(xcb_window_t window, int depth)
{
    const auto cookie = xcb_query_tree(m_watch.xcb(), window);
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11DialogStacking>(this), window, depth](const void *reply) {
        const auto *tree = static_cast<const xcb_query_tree_reply_t *>(reply);
        if (!self || !tree || tree->parent == XCB_WINDOW_NONE) {
            return;
        }
        if (tree->parent == self->m_watch.root()) {
            self->askForOrder(window);
        } else if (depth < kMostFrames) {
            self->askForFrame(tree->parent, depth + 1);
        }
    });
}

void X11DialogStacking::askForOrder(xcb_window_t frame)
{
    const auto cookie = xcb_query_tree(m_watch.xcb(), m_watch.root());
    m_watch.whenReplied(cookie.sequence, [self = QPointer<X11DialogStacking>(this), frame](const void *reply) {
        if (!self) {
            return;
        }
        const auto windows = childrenIn(reply); // from the bottom to the top
        const auto dialog = std::find(windows.begin(), windows.end(), frame);
        // Only downward: below a dialog of the dialog it would come above the first one.
        if (std::find(dialog, windows.end(), self->m_window) != windows.end()) {
            self->stack(XCB_STACK_MODE_BELOW, frame);
        }
    });
}

/// Without a sibling: relative to all windows.
void X11DialogStacking::stack(std::uint32_t mode, xcb_window_t sibling)
{
    if (!m_isOn) {
        return; // meanwhile
    }
    xcb_configure_window_value_list_t values{};
    values.sibling = sibling;
    values.stack_mode = mode;
    const std::uint16_t which = XCB_CONFIG_WINDOW_STACK_MODE | (sibling ? XCB_CONFIG_WINDOW_SIBLING : 0);
    xcb_configure_window_aux(m_watch.xcb(), m_window, which, &values);
    m_watch.flush();
}

} // namespace ostrelle
