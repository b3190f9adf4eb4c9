#include "platform/x11/XdndTarget.h"

#include "platform/x11/X11PanelWindow.h"
#include "platform/x11/XcbReply.h"

#include <QCoreApplication>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace ostrelle {

namespace {

constexpr std::uint32_t kOldestVersion = 3;
constexpr std::uint32_t kNewestVersion = 5;
/// Words of a source's list of types that are looked at.
constexpr std::uint32_t kMostTypes = 4096;
/// Messages that a source may send before its list of types has come; it must wait for the first one's answer.
constexpr std::size_t kMostWaiting = 64;

constexpr std::uint32_t kHasTypeList = 1;
constexpr std::uint32_t kWillTake = 1;
constexpr std::uint32_t kWantsEveryPosition = 2;

} // namespace

XdndTarget::XdndTarget(const Services &services, QList<xcb_atom_t> wantedTypes)
    : m_services(services)
    , m_wantedTypes(std::move(wantedTypes))
    , m_enter(services.watch.atom("XdndEnter"))
    , m_position(services.watch.atom("XdndPosition"))
    , m_leave(services.watch.atom("XdndLeave"))
    , m_drop(services.watch.atom("XdndDrop"))
    , m_status(services.watch.atom("XdndStatus"))
    , m_finished(services.watch.atom("XdndFinished"))
    , m_typeList(services.watch.atom("XdndTypeList"))
    , m_copy(services.watch.atom("XdndActionCopy"))
{
    qApp->installNativeEventFilter(this);
}

XdndTarget::~XdndTarget()
{
    qApp->removeNativeEventFilter(this);
}

bool XdndTarget::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t") {
        return false;
    }
    const auto &event = *static_cast<const xcb_generic_event_t *>(message);
    if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE) {
        return false;
    }
    const auto &client = reinterpret_cast<const xcb_client_message_event_t &>(event);
    const bool isXdnd =
        client.type == m_enter || client.type == m_position || client.type == m_leave || client.type == m_drop;
    if (!isXdnd || client.format != 32 || client.window != m_services.window.id() ||
        m_services.watch.isOwn(client.data.data32[0])) {
        return false;
    }
    handle(client);
    return true;
}

void XdndTarget::handle(const xcb_client_message_event_t &message)
{
    const xcb_window_t source = message.data.data32[0];
    if (message.type == m_enter) {
        enter(message);
    } else if (!m_drag || m_drag->source != source || m_drag->isReleased) {
        // A source whose drag has ended for this side, or never began: it must not wait for an answer.
        if (message.type == m_position && !m_drag) {
            m_isAccepted = false;
            sendStatus(source);
        } else if (message.type == m_drop && !m_drag) {
            sendFinished(source, kNewestVersion, false);
        }
    } else if (!m_drag->areTypesKnown) {
        if (m_drag->waiting.size() < kMostWaiting) {
            m_drag->waiting.push_back(message);
        }
    } else {
        m_drag->watch->restart();
        if (message.type == m_position) {
            move(message);
        } else if (message.type == m_drop) {
            release(message);
        } else {
            leave();
        }
    }
}

void XdndTarget::enter(const xcb_client_message_event_t &message)
{
    leave(); // of a drag that ended without a word
    const std::uint32_t version = message.data.data32[1] >> 24;
    if (version < kOldestVersion) {
        return;
    }
    m_isAccepted = false;
    m_drag = std::make_unique<Drag>();
    m_drag->source = message.data.data32[0];
    m_drag->version = std::min(version, kNewestVersion);
    m_drag->watch =
        std::make_unique<XdndSourceWatch>(m_services.watch, m_services.scheduler, m_services.pointer, m_drag->source);
    connect(m_drag->watch.get(), &XdndSourceWatch::gone, this, &XdndTarget::leave);
    if (message.data.data32[1] & kHasTypeList) {
        askForTypes();
    } else {
        setTypes({&message.data.data32[2], 3});
    }
}

void XdndTarget::askForTypes()
{
    const auto cookie =
        xcb_get_property(m_services.watch.xcb(), 0, m_drag->source, m_typeList, XCB_ATOM_ATOM, 0, kMostTypes);
    m_services.watch.whenReplied(cookie.sequence,
                                 [guard = QPointer<XdndSourceWatch>(m_drag->watch.get()), this](const void *reply) {
                                     if (guard) { // it lives as long as this drag
                                         setTypes(propertyWords(static_cast<const xcb_get_property_reply_t *>(reply)));
                                     }
                                 });
}

void XdndTarget::setTypes(std::span<const std::uint32_t> offered)
{
    for (const xcb_atom_t type : m_wantedTypes) {
        if (std::find(offered.begin(), offered.end(), type) != offered.end()) {
            m_drag->types << type;
        }
    }
    m_drag->areTypesKnown = true;
    for (const xcb_client_message_event_t &message : std::exchange(m_drag->waiting, {})) {
        handle(message);
    }
}

void XdndTarget::move(const xcb_client_message_event_t &message)
{
    const auto *words = message.data.data32;
    const QPoint native(static_cast<std::int16_t>(words[2] >> 16), static_cast<std::int16_t>(words[2] & 0xffff));
    const xcb_window_t source = m_drag->source;
    if (!m_drag->types.isEmpty()) {
        if (std::exchange(m_drag->isReported, true)) {
            Q_EMIT moved(native, words[3]);
        } else {
            Q_EMIT entered(native, m_drag->types, words[3]);
        }
    }
    sendStatus(source); // the listener has had its say
}

void XdndTarget::release(const xcb_client_message_event_t &message)
{
    m_drag->isReleased = true;
    if (m_drag->isReported) {
        Q_EMIT released(message.data.data32[2]);
    } else {
        finish(false);
    }
}

void XdndTarget::finish(bool taken)
{
    if (m_drag) {
        sendFinished(m_drag->source, m_drag->version, taken);
        m_drag.reset();
    }
}

void XdndTarget::leave()
{
    if (!m_drag) {
        return;
    }
    const bool wasReported = m_drag->isReported;
    m_drag.reset();
    if (wasReported) {
        Q_EMIT left();
    }
}

void XdndTarget::setAccepted(bool accepted)
{
    if (m_isAccepted == accepted) {
        return;
    }
    m_isAccepted = accepted;
    if (m_drag && m_drag->isReported && !m_drag->isReleased) {
        sendStatus(m_drag->source);
    }
}

void XdndTarget::sendStatus(xcb_window_t source) const
{
    // The rectangle stays empty: every position is wanted. A refusal says no more than that, because Qt's sources take
    // any flag for consent.
    send(source, m_status, m_isAccepted ? kWillTake | kWantsEveryPosition : 0, m_isAccepted, 4);
}

void XdndTarget::sendFinished(xcb_window_t source, std::uint32_t version, bool taken) const
{
    const bool isTold = version >= 5 && taken; // the older message says only that the data is not needed any more
    send(source, m_finished, isTold ? kWillTake : 0, isTold, 2);
}

void XdndTarget::send(xcb_window_t source, xcb_atom_t type, std::uint32_t flags, bool isCopy, int actionAt) const
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = source;
    message.type = type;
    message.data.data32[0] = m_services.window.id();
    message.data.data32[1] = flags;
    message.data.data32[actionAt] = isCopy ? m_copy : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(m_services.watch.xcb(), 0, source, 0, reinterpret_cast<const char *>(&message));
    m_services.watch.flush();
}

} // namespace ostrelle
