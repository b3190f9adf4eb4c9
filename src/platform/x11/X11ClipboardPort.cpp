#include "platform/x11/X11ClipboardPort.h"

#include "foundation/MakeChild.h"
#include "platform/freedesktop/ClipboardTypes.h"
#include "platform/freedesktop/OfferMimeData.h"
#include "platform/freedesktop/PortalFileTransfer.h"
#include "platform/x11/SelectionOwners.h"
#include "platform/x11/X11ClipboardHandOver.h"
#include "platform/x11/X11ContentRead.h"
#include "platform/x11/X11Frontmost.h"
#include "platform/x11/X11SnapshotRead.h"
#include "platform/x11/XcbReply.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

#include <xcb/xfixes.h>

#include <utility>

namespace ostrelle {

namespace {

template <typename Answer>
void answerLater(QObject *context, const std::function<void(Answer)> &answer, Answer content)
{
    QMetaObject::invokeMethod(
        context, [answer, content = std::move(content)] { answer(content); }, Qt::QueuedConnection);
}

} // namespace

X11ClipboardPort::X11ClipboardPort(WatchConnection &connection, X11Frontmost &frontmost, TaskScheduler &scheduler,
                                   QString keeperPath)
    : m_connection(connection)
    , m_frontmost(frontmost)
    , m_scheduler(scheduler)
    , m_keeperPath(std::move(keeperPath))
    , m_clipboard(connection.atom("CLIPBOARD"))
    , m_names(std::make_unique<X11AtomNames>(connection))
    , m_fileTransfer(std::make_unique<PortalFileTransfer>())
{
    // Asked for now: a question from within an answer's handler would have to wait.
    m_connection.atom("TARGETS");
    m_connection.atom("INCR");
    m_connection.atom("_OSTRELLE_SELECTION");
    m_events = m_connection.onEvent([this](const xcb_generic_event_t &event) { handleEvent(event); });
    m_selectionEvent = watchSelectionOwners(m_connection, m_clipboard);
    adoptCurrentOwner();
}

X11ClipboardPort::~X11ClipboardPort() = default;

void X11ClipboardPort::adoptCurrentOwner()
{
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), m_clipboard), nullptr));
    m_connection.flush();
    m_owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    m_activation = m_frontmost.activation();
}

void X11ClipboardPort::handleEvent(const xcb_generic_event_t &event)
{
    if (m_selectionEvent == 0 || (event.response_type & 0x7f) != m_selectionEvent) {
        return;
    }
    const auto &notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t &>(event);
    if (notify.selection != m_clipboard) {
        return;
    }
    if (notify.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER || notify.owner == XCB_WINDOW_NONE) {
        m_owner = XCB_WINDOW_NONE; // no new content, but the old one is gone
        if (m_unconfirmedWrites == 0) {
            endReads();
        }
        return;
    }
    handleOwner(notify.owner, notify.selection_timestamp);
}

void X11ClipboardPort::handleOwner(xcb_window_t owner, xcb_timestamp_t time)
{
    m_owner = owner;
    m_time = time;
    m_activation = m_frontmost.activation();
    if (m_unconfirmedWrites > 0) {
        return; // that write itself, counted when it was made, or what it has replaced already
    }
    announceChange();
}

void X11ClipboardPort::announceChange()
{
    endReads();
    ++m_changeCount;
    Q_EMIT changed();
}

void X11ClipboardPort::snapshot(QObject *context, std::function<void(std::optional<ClipboardSnapshot>)> answer)
{
    if (m_owner == XCB_WINDOW_NONE) {
        answerLater<std::optional<ClipboardSnapshot>>(context, answer, std::nullopt);
        return;
    }
    askForTypes([guard = QPointer<QObject>(context), answer = std::move(answer)](const auto &snapshot) {
        if (guard) {
            answer(snapshot);
        }
    });
}

void X11ClipboardPort::askForTypes(std::function<void(std::optional<ClipboardSnapshot>)> then)
{
    makeChild<X11SnapshotRead>(this, X11SnapshotRead::Services{m_connection, *m_names, m_frontmost, m_scheduler},
                               X11SnapshotRead::Subject{m_clipboard, m_time, m_changeCount, m_activation},
                               [this, then = std::move(then)](const std::optional<ClipboardSnapshot> &snapshot,
                                                              const X11SnapshotRead::Types &types) {
                                   if (snapshot && snapshot->changeCount == m_changeCount) {
                                       m_types = types;
                                   }
                                   then(snapshot);
                               });
}

void X11ClipboardPort::read(qint64 changeCount, ClipboardFormat format, QObject *context,
                            std::function<void(ClipboardContent)> answer)
{
    if (changeCount != m_changeCount || m_owner == XCB_WINDOW_NONE) {
        answerLater<ClipboardContent>(context, answer, ClipboardContent::without(ClipboardContent::Outcome::Gone));
        return;
    }
    auto guarded = [guard = QPointer<QObject>(context), answer = std::move(answer)](const ClipboardContent &content) {
        if (guard) {
            answer(content);
        }
    };
    if (m_types) {
        readKnown(format, std::move(guarded));
        return;
    }
    askForTypes([this, changeCount, format, guarded = std::move(guarded)](const auto &snapshot) {
        if (changeCount != m_changeCount || m_owner == XCB_WINDOW_NONE) {
            guarded(ClipboardContent::without(ClipboardContent::Outcome::Gone));
        } else if (!snapshot) {
            guarded(ClipboardContent::without(ClipboardContent::Outcome::TimedOut));
        } else {
            readKnown(format, guarded);
        }
    });
}

void X11ClipboardPort::readKnown(ClipboardFormat format, std::function<void(ClipboardContent)> then)
{
    QByteArrayList names;
    for (const X11AtomNames::Named &type : std::as_const(*m_types)) {
        names << type.name;
    }
    QList<X11ContentRead::Target> targets;
    for (const clipboardTypes::Candidate &candidate : clipboardTypes::candidatesFor(format, names)) {
        targets << X11ContentRead::Target{m_types->at(names.indexOf(candidate.type)).atom, candidate.encoding};
    }
    makeChild<X11ContentRead>(this, X11ContentRead::Services{m_connection, m_scheduler, *m_fileTransfer},
                              X11ContentRead::Subject{m_clipboard, m_time, format, targets}, std::move(then));
}

void X11ClipboardPort::endReads()
{
    m_types.reset();
    for (X11SnapshotRead *read : findChildren<X11SnapshotRead *>(Qt::FindDirectChildrenOnly)) {
        read->end();
    }
    for (X11ContentRead *read : findChildren<X11ContentRead *>(Qt::FindDirectChildrenOnly)) {
        read->end();
    }
}

qint64 X11ClipboardPort::write(const ClipboardOffer &offer)
{
    QClipboard &clipboard = *QGuiApplication::clipboard();
    if (std::unique_ptr<QMimeData> data = mimeDataOf(offer)) {
        clipboard.setMimeData(data.release()); // the clipboard owns it
    } else {
        clipboard.clear();
    }
    adoptCurrentOwner();
    m_time = XCB_CURRENT_TIME; // until the server announces the write's own
    // The toolkit has made sure that the server knows by now. What the server tells before it answers this question is
    // therefore that write, or older, or in the rarest case somebody who came right after it.
    ++m_unconfirmedWrites;
    const auto cookie = xcb_get_selection_owner(m_connection.xcb(), m_clipboard);
    m_connection.whenReplied(cookie.sequence, [guard = QPointer<X11ClipboardPort>(this)](const void *) {
        if (guard && --guard->m_unconfirmedWrites == 0 && guard->m_owner != XCB_WINDOW_NONE &&
            !guard->m_connection.isOwn(guard->m_owner)) {
            guard->announceChange();
        }
    });
    announceChange();
    return m_changeCount;
}

void X11ClipboardPort::handOver()
{
    X11ClipboardHandOver(m_connection, m_scheduler, m_keeperPath).run();
}

} // namespace ostrelle
