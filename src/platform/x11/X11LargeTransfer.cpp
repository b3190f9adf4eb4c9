#include "platform/x11/X11LargeTransfer.h"

#include "platform/x11/XcbReply.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include <utility>

namespace ostrelle {

namespace {

struct Disconnected
{
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};
using PropertyReply = XcbReply<xcb_get_property_reply_t>;
using Outcome = ClipboardContent::Outcome;
using Result = X11SelectionTransfer::Result;

/// A large property is fetched in slices of this size, so that the reply's buffer stays small beside the content's.
constexpr std::uint32_t kSliceBytes = 1024 * 1024;

} // namespace

X11LargeTransfer::X11LargeTransfer(xcb_window_t window, xcb_atom_t property, xcb_atom_t incr,
                                   const X11SelectionTransfer::Request &request, std::function<void(Result)> done)
    : m_window(window)
    , m_property(property)
    , m_incr(incr)
    , m_cap(request.cap)
    , m_overflow(request.overflow)
    , m_done(std::move(done))
    , m_stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_thread([this] { run(); })
{
}

X11LargeTransfer::~X11LargeTransfer()
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(m_stop, &one, sizeof one);
    m_thread.join(); // between two polls it only asks the server, never the owner
    close(m_stop);
}

void X11LargeTransfer::run()
{
    Result result;
    {
        const std::unique_ptr<xcb_connection_t, Disconnected> xcb(xcb_connect(nullptr, nullptr));
        result = xcb_connection_has_error(xcb.get()) ? Result::without(Outcome::Gone) : receive(xcb.get());
    }
    QMetaObject::invokeMethod(
        this, [this, kept = std::move(result)]() mutable { m_done(std::move(kept)); }, Qt::QueuedConnection);
}

Result X11LargeTransfer::receive(xcb_connection_t *xcb)
{
    // Events of another client's window may be asked for, too (each client has a mask of its own).
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, m_window, XCB_CW_EVENT_MASK, &mask);

    Result result;
    const PropertyReply first(xcb_get_property_reply(
        xcb, xcb_get_property(xcb, 0, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    if (!first) {
        return Result::without(Outcome::Gone);
    }
    bool isEmpty = false;
    if (first->type != m_incr) {
        append(xcb, result, isEmpty);
        return result;
    }
    xcb_delete_property(xcb, m_window, m_property); // the owner begins
    xcb_flush(xcb);
    while (waitForNewValue(xcb)) {
        if (!append(xcb, result, isEmpty)) {
            return result;
        }
        if (isEmpty) {
            result.outcome = Outcome::Read;
            return result;
        }
    }
    return Result::without(Outcome::Gone);
}

bool X11LargeTransfer::append(xcb_connection_t *xcb, Result &result, bool &isEmpty)
{
    isEmpty = true;
    for (std::uint32_t offset = 0;; offset += kSliceBytes / 4) {
        // The last slice takes the property away, by which the owner knows to send the next increment.
        const PropertyReply reply(xcb_get_property_reply(
            xcb, xcb_get_property(xcb, 1, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, offset, kSliceBytes / 4),
            nullptr));
        if (!reply) {
            result = Result::without(Outcome::Gone);
            return false;
        }
        const int length = xcb_get_property_value_length(reply.get());
        const bool isTooLarge = result.bytes.size() + length + qint64(reply->bytes_after) > m_cap;
        if (isTooLarge && m_overflow == X11SelectionTransfer::Overflow::Refuse) {
            result = Result::without(Outcome::TooLarge);
            return false;
        }
        if (reply->type != XCB_ATOM_NONE) {
            result.type = reply->type;
            result.unitBits = reply->format;
        }
        result.bytes.append(static_cast<const char *>(xcb_get_property_value(reply.get())),
                            std::min<qsizetype>(length, m_cap - result.bytes.size()));
        if (isTooLarge && result.bytes.size() == m_cap) {
            result.outcome = Outcome::Read;
            result.isCut = true;
            return false; // the owner learns with the window's end that nobody wants the rest
        }
        isEmpty = isEmpty && length == 0;
        m_progress.fetch_add(1, std::memory_order_relaxed);
        if (reply->bytes_after == 0) {
            result.outcome = Outcome::Read;
            return true;
        }
    }
}

bool X11LargeTransfer::waitForNewValue(xcb_connection_t *xcb)
{
    for (;;) {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
            if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY) {
                continue;
            }
            const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
            if (notify->window == m_window && notify->atom == m_property && notify->state == XCB_PROPERTY_NEW_VALUE) {
                return true;
            }
        }
        if (xcb_connection_has_error(xcb)) {
            return false;
        }
        pollfd watched[] = {{xcb_get_file_descriptor(xcb), POLLIN, 0}, {m_stop, POLLIN, 0}};
        if (poll(watched, 2, -1) < 0 && errno != EINTR) {
            return false;
        }
        if (watched[1].revents != 0) {
            return false;
        }
    }
}

} // namespace ostrelle
