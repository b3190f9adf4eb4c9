#include "platform/x11/X11SelectionTransfer.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/X11LargeTransfer.h"

#include <QPointer>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// Larger answers made gaps of 60 to 160 ms in the main loop when they were read there.
constexpr std::uint32_t kSmallBytes = 256 * 1024;
/// An owner that does nothing for so long is taken for hung.
constexpr auto kStepDeadline = 2s;
/// Progress of a large transfer is looked at so often, instead of waking the main thread for each increment.
constexpr auto kProgressTick = 500ms;
constexpr int kIdleTicksAllowed = kStepDeadline / kProgressTick;
/// In all; an owner that drips would restart its step for ever.
constexpr int kTicksAllowed = 10s / kProgressTick;

using Outcome = ClipboardContent::Outcome;

} // namespace

X11SelectionTransfer::Result X11SelectionTransfer::Result::without(ClipboardContent::Outcome outcome)
{
    Result result;
    result.outcome = outcome;
    return result;
}

X11SelectionTransfer::X11SelectionTransfer(WatchConnection &connection, TaskScheduler &scheduler,
                                           const Request &request, std::function<void(Result)> done)
    : m_connection(connection)
    , m_scheduler(scheduler)
    , m_request(request)
    , m_done(std::move(done))
    , m_property(connection.atom("_OSTRELLE_SELECTION"))
    , m_incr(connection.atom("INCR"))
{
    xcb_connection_t *xcb = m_connection.xcb();
    m_events = m_connection.onEvent([this](const xcb_generic_event_t &event) { handleEvent(event); });
    m_window = xcb_generate_id(xcb);
    xcb_create_window(xcb, 0, m_window, m_connection.root(), -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_convert_selection(xcb, m_window, m_request.selection, m_request.target, m_property, m_request.time);
    m_connection.flush();
    m_deadline = m_scheduler.after(kStepDeadline, this, [this] { finish(Result::without(Outcome::TimedOut)); });
}

X11SelectionTransfer::~X11SelectionTransfer()
{
    m_large.reset(); // before the window: its thread still reads from it
    xcb_destroy_window(m_connection.xcb(), m_window);
    m_connection.flush();
}

void X11SelectionTransfer::handleEvent(const xcb_generic_event_t &event)
{
    if ((event.response_type & 0x7f) != XCB_SELECTION_NOTIFY || m_isFinished || m_large) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_selection_notify_event_t &>(event);
    if (notify.requestor != m_window || notify.selection != m_request.selection || notify.target != m_request.target) {
        return;
    }
    if (notify.property == XCB_ATOM_NONE) {
        finish(Result::without(Outcome::Absent));
        return;
    }
    probe();
}

void X11SelectionTransfer::probe()
{
    // Not deleted yet: for INCR that is the signal to begin, which belongs to whoever reads on.
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(m_connection.xcb(), 0, m_window, m_property, XCB_GET_PROPERTY_TYPE_ANY, 0, kSmallBytes / 4);
    m_connection.whenReplied(cookie.sequence, [guard = QPointer<X11SelectionTransfer>(this)](const void *reply) {
        if (guard) {
            guard->handleProbe(reply);
        }
    });
}

void X11SelectionTransfer::handleProbe(const void *reply)
{
    if (m_isFinished) {
        return;
    }
    const auto *property = static_cast<const xcb_get_property_reply_t *>(reply);
    if (!property) {
        finish(Result::without(Outcome::Absent));
        return;
    }
    const auto *value = static_cast<const char *>(xcb_get_property_value(property));
    const int length = xcb_get_property_value_length(property);
    if (property->type == m_incr) {
        std::uint32_t atLeast = 0; // a lower bound by ICCCM 2.7.2
        if (property->format == 32 && length >= 4) {
            std::memcpy(&atLeast, value, sizeof atLeast);
        }
        if (atLeast > m_request.cap && m_request.overflow == Overflow::Refuse) {
            finish(Result::without(Outcome::TooLarge));
        } else {
            goOnElsewhere();
        }
        return;
    }
    const bool isTooLarge = qint64(length) + qint64(property->bytes_after) > m_request.cap;
    if (isTooLarge && m_request.overflow == Overflow::Refuse) {
        finish(Result::without(Outcome::TooLarge));
    } else if (property->bytes_after > 0) {
        goOnElsewhere();
    } else {
        Result result = Result::without(Outcome::Read);
        result.isCut = isTooLarge;
        result.bytes = QByteArray(value, std::min<qsizetype>(length, m_request.cap));
        result.type = property->type;
        result.unitBits = property->format;
        finish(std::move(result));
    }
}

void X11SelectionTransfer::goOnElsewhere()
{
    m_large = std::make_unique<X11LargeTransfer>(m_window, m_property, m_incr, m_request,
                                                 [this](Result result) { finish(std::move(result)); });
    m_deadline = m_scheduler.every(kProgressTick, this, [this] { watchProgress(); });
}

void X11SelectionTransfer::watchProgress()
{
    const quint64 progress = m_large->progress();
    m_idleTicks = progress == m_lastProgress ? m_idleTicks + 1 : 0;
    m_lastProgress = progress;
    if (++m_ticks >= kTicksAllowed || m_idleTicks >= kIdleTicksAllowed) {
        finish(Result::without(Outcome::TimedOut));
    }
}

void X11SelectionTransfer::finish(Result result)
{
    if (std::exchange(m_isFinished, true)) {
        return;
    }
    m_deadline.cancel();
    // Later, since `done` may destroy this from within one of its own handlers.
    QMetaObject::invokeMethod(
        this,
        [this, kept = std::move(result)]() mutable {
            const std::function<void(Result)> done = std::move(m_done);
            done(std::move(kept));
        },
        Qt::QueuedConnection);
}

} // namespace ostrelle
