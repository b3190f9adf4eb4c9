#include "platform/x11/X11FileDrags.h"

#include "foundation/TaskScheduler.h"
#include "platform/x11/X11PanelHost.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// A source gets so long to give its list, from the first position and again from the drop.
constexpr auto kPatience = 500ms;
/// Some sources give their list only to a request with the time of their latest message.
constexpr int kMostRefusals = 10;

QStringList localFiles(const QMimeData *data)
{
    QStringList paths;
    for (const QUrl &url : data->urls()) {
        if (url.isLocalFile() && paths.size() < FileDrags::kFileLimit) {
            paths << url.toLocalFile();
        }
    }
    return paths;
}

} // namespace

X11FileDrags::X11FileDrags(WatchConnection &watch, TaskScheduler &scheduler, const X11RawPointer &pointer,
                           const X11PanelHost &panelHost, QObject *parent)
    : FileDrags(parent)
    , m_watch(watch)
    , m_scheduler(scheduler)
    , m_panelHost(panelHost)
{
    const QByteArrayList names{"text/uri-list", "x-special/gnome-copied-files", "application/vnd.portal.filetransfer",
                               "application/vnd.portal.files"};
    QList<xcb_atom_t> wanted;
    for (const auto &[type, encoding] : clipboardTypes::candidatesFor(ClipboardFormat::Files, names)) {
        m_targets << X11ContentRead::Target{watch.atom(type.constData()), encoding};
        wanted << m_targets.last().atom;
    }
    // All that a browser says of a picture in a page. Of a page on this machine it names a file.
    m_targets << X11ContentRead::Target{watch.atom("text/x-moz-url"), clipboardTypes::Encoding::MozillaUrl};
    wanted << m_targets.last().atom;
    // Asked for now: a question from within an answer's handler would have to wait.
    for (const char *name : {"XdndSelection", "INCR", "_OSTRELLE_SELECTION"}) {
        watch.atom(name);
    }
    m_xdnd = std::make_unique<XdndTarget>(XdndTarget::Services{watch, scheduler, pointer, panelHost.window()},
                                          std::move(wanted));
    connect(m_xdnd.get(), &XdndTarget::entered, this, &X11FileDrags::foreignEnter);
    connect(m_xdnd.get(), &XdndTarget::moved, this, &X11FileDrags::foreignMove);
    connect(m_xdnd.get(), &XdndTarget::left, this, &X11FileDrags::foreignLeave);
    connect(m_xdnd.get(), &XdndTarget::released, this, &X11FileDrags::foreignRelease);
    // At the window the events come before any widget has a say: a text field would take the paths as text.
    connect(&panelHost, &X11PanelHost::windowReplaced, this,
            [this](QWindow *window) { window->installEventFilter(this); });
}

QPointF X11FileDrags::fromNative(const QPoint &native) const
{
    return QPointF(native - m_panelHost.window().origin()) / m_panelHost.window().scale();
}

void X11FileDrags::setAccepted(bool accepted)
{
    if (m_foreign && m_foreign->releaseTime) {
        return; // the user has let go: what was shown then holds
    }
    m_isAccepted = accepted;
    m_xdnd->setAccepted(accepted);
}

void X11FileDrags::foreignEnter(const QPoint &native, const QList<quint32> &types, quint32 time)
{
    m_position = fromNative(native);
    m_isAccepted = false;
    m_foreign = Foreign();
    std::copy_if(m_targets.cbegin(), m_targets.cend(), std::back_inserter(m_foreign->targets),
                 [&types](const auto &target) { return types.contains(target.atom); });
    m_foreign->patience = m_scheduler.after(kPatience, this, [this] { giveUpWaiting(); });
    ask(time);
    Q_EMIT entered(m_position);
}

void X11FileDrags::foreignMove(const QPoint &native, quint32 time)
{
    m_position = fromNative(native);
    if (!m_foreign->read && !m_foreign->paths && m_foreign->refusals <= kMostRefusals) {
        ask(time);
    }
    Q_EMIT moved(m_position);
}

void X11FileDrags::foreignLeave()
{
    m_foreign.reset();
    m_isAccepted = false;
    Q_EMIT left();
}

void X11FileDrags::foreignRelease(quint32 time)
{
    if (!m_isAccepted) {
        m_xdnd->finish(false);
        foreignLeave();
        return;
    }
    m_foreign->releaseTime = time;
    if (m_foreign->paths) {
        conclude();
        return;
    }
    m_foreign->patience = m_scheduler.after(kPatience, this, [this] { giveUpWaiting(); });
    if (!m_foreign->read) {
        ask(time);
    }
}

void X11FileDrags::ask(quint32 time)
{
    m_foreign->read = std::make_unique<X11FileListRead>(
        X11ContentRead::Services{m_watch, m_scheduler, m_fileTransfer}, m_foreign->targets, time,
        [this, time](X11FileListRead::Outcome outcome, const QStringList &paths) { handle(outcome, paths, time); });
}

void X11FileDrags::handle(X11FileListRead::Outcome outcome, const QStringList &paths, quint32 askedWith)
{
    m_foreign->read.reset();
    if (outcome != X11FileListRead::Outcome::Refused) {
        know(paths);
        return;
    }
    ++m_foreign->refusals;
    if (m_foreign->releaseTime && m_foreign->releaseTime != askedWith) {
        ask(*m_foreign->releaseTime);
    } else if (m_foreign->releaseTime) {
        know({});
    } // else the next position brings another time
}

void X11FileDrags::giveUpWaiting()
{
    if (m_foreign->releaseTime) {
        know({});
    } else {
        m_foreign->isTold = true;
        Q_EMIT filesKnown({}); // the source may still answer before the drag ends
    }
}

void X11FileDrags::know(const QStringList &paths)
{
    m_foreign->patience.cancel();
    m_foreign->read.reset();
    m_foreign->paths = paths;
    if (!std::exchange(m_foreign->isTold, true) || !paths.isEmpty()) {
        Q_EMIT filesKnown(paths);
    }
    if (m_foreign && m_foreign->releaseTime) {
        conclude();
    }
}

void X11FileDrags::conclude()
{
    const QStringList paths = *m_foreign->paths;
    m_foreign.reset();
    m_isAccepted = false;
    m_xdnd->finish(true); // also without any file: the drop was taken when it was let go
    Q_EMIT dropped(m_position, paths);
}

bool X11FileDrags::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
        ownEnter(static_cast<QDropEvent &>(*event));
        return true;
    case QEvent::DragMove:
        ownMove(static_cast<QDropEvent &>(*event));
        return true;
    case QEvent::Drop:
        ownDrop(static_cast<QDropEvent &>(*event));
        return true;
    case QEvent::DragLeave:
        ownLeave();
        return true;
    default:
        return FileDrags::eventFilter(watched, event);
    }
}

void X11FileDrags::ownEnter(QDropEvent &event)
{
    const QStringList paths = event.source() ? localFiles(event.mimeData()) : QStringList();
    event.setAccepted(!paths.isEmpty()); // refused now, the toolkit would tell of no motion either
    if (paths.isEmpty()) {
        return;
    }
    event.setDropAction(Qt::CopyAction);
    m_position = event.position();
    m_isAccepted = false;
    m_ownPaths = paths;
    Q_EMIT entered(m_position);
    Q_EMIT filesKnown(paths);
}

void X11FileDrags::ownMove(QDropEvent &event)
{
    if (m_ownPaths && m_position != event.position()) {
        m_position = event.position();
        Q_EMIT moved(m_position);
    }
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(m_ownPaths && m_isAccepted);
}

void X11FileDrags::ownDrop(QDropEvent &event)
{
    const bool isTaken = m_ownPaths && m_isAccepted;
    event.setDropAction(Qt::CopyAction);
    event.setAccepted(isTaken);
    if (!isTaken) {
        ownLeave();
        return;
    }
    const QStringList paths = *std::exchange(m_ownPaths, std::nullopt);
    m_position = event.position();
    m_isAccepted = false;
    Q_EMIT dropped(m_position, paths);
}

void X11FileDrags::ownLeave()
{
    if (std::exchange(m_ownPaths, std::nullopt)) {
        m_isAccepted = false;
        Q_EMIT left();
    }
}

} // namespace ostrelle
