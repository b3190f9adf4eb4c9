#include "platform/x11/X11ClipboardHandOver.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/KeeperProcess.h"
#include "platform/x11/X11SelectionTransfer.h"
#include "platform/x11/XcbReply.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMimeData>

#include <optional>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto kManagerDeadline = 700ms;
constexpr auto kKeeperDeadline = 700ms;
constexpr auto kReleaseDeadline = 200ms;

/// The content under every name it goes by.
QList<KeeperProcess::Content> contentsOf(const QMimeData &data)
{
    QList<KeeperProcess::Content> contents;
    for (const QString &format : data.formats()) {
        if (format.startsWith(QStringLiteral("application/x-qt-"))) {
            continue; // means something within this process only
        }
        KeeperProcess::Content content{{format.toUtf8()}, data.data(format)};
        if (format == QStringLiteral("text/plain")) {
            content.types = {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"};
            const QString text = data.text();
            content.bytes = text.toUtf8();
            contents << KeeperProcess::Content{{"STRING"}, text.toLatin1()};
        }
        contents << content;
    }
    return contents;
}

} // namespace

X11ClipboardHandOver::X11ClipboardHandOver(WatchConnection &connection, TaskScheduler &scheduler,
                                           const QString &keeperPath)
    : m_connection(connection)
    , m_scheduler(scheduler)
    , m_keeperPath(keeperPath)
    , m_clipboard(connection.atom("CLIPBOARD"))
{
}

void X11ClipboardHandOver::run()
{
    if (isOwner() && !giveToManager()) {
        giveToKeeper();
    }
}

bool X11ClipboardHandOver::isOwner()
{
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), m_clipboard), nullptr));
    m_connection.flush();
    m_owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    return m_owner != XCB_WINDOW_NONE && m_connection.isOwn(m_owner);
}

bool X11ClipboardHandOver::giveToManager()
{
    const xcb_atom_t manager = m_connection.atom("CLIPBOARD_MANAGER");
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), manager), nullptr));
    m_connection.flush();
    if (!reply || reply->owner == XCB_WINDOW_NONE) {
        return false;
    }
    // The toolkit asks again when it ends, and would then wait long for a manager that hangs; this one is known to
    // answer. A manager that does not loses the selection to the keeper, and the toolkit has nothing to ask for.
    std::optional<X11SelectionTransfer::Result> answer;
    X11SelectionTransfer saving(m_connection, m_scheduler,
                                {.selection = manager, .target = m_connection.atom("SAVE_TARGETS")},
                                [&answer](X11SelectionTransfer::Result result) { answer = std::move(result); });
    return waitFor(kManagerDeadline, [&answer] { return answer.has_value(); }) &&
           answer->outcome == ClipboardContent::Outcome::Read;
}

void X11ClipboardHandOver::giveToKeeper()
{
    const QMimeData *data = QGuiApplication::clipboard()->mimeData(); // its own: nobody is asked
    if (!data || data->formats().isEmpty()) {
        return;
    }
    KeeperProcess keeper(m_keeperPath, m_owner, contentsOf(*data));
    waitFor(kKeeperDeadline, [&keeper] { return keeper.isOver(); });
    if (keeper.hasTakenOver()) {
        waitFor(kReleaseDeadline, [] { return !QGuiApplication::clipboard()->ownsClipboard(); });
    }
}

bool X11ClipboardHandOver::waitFor(std::chrono::milliseconds deadline, const std::function<bool()> &condition)
{
    bool isLate = false;
    const Task timer = m_scheduler.after(deadline, this, [&isLate] { isLate = true; });
    while (!condition() && !isLate) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

} // namespace ostrelle
