#include "platform/x11/X11DragOut.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "platform/freedesktop/OfferMimeData.h"
#include "platform/x11/X11RawPointer.h"

#include <QCoreApplication>
#include <QDrag>
#include <QMimeData>

#include <memory>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// The types of a drag are fixed when it begins, so it begins when the portal has answered, or would be felt as late.
constexpr auto kPortalPatience = 80ms;
constexpr auto kButtonLook = 100ms;
/// A release that the toolkit hears of has ended the drag long before.
constexpr int kLooksToBelieve = 3;

} // namespace

/// One call of start(), until the drag begins.
struct X11DragOut::Start
{
    QPointer<QWidget> source;
    std::unique_ptr<QMimeData> content;
    QPixmap picture;
    QPoint hotSpot;
    std::function<void(Outcome)> ended;
    Task patience;
};

X11DragOut::X11DragOut(TaskScheduler &scheduler, const X11RawPointer &pointer)
    : m_scheduler(scheduler)
    , m_pointer(pointer)
{
}

bool X11DragOut::take(QWidget &source, const std::function<void(Outcome)> &ended)
{
    if (m_isBusy) {
        QMetaObject::invokeMethod(
            &source, [ended] { ended(Outcome::Cancelled); }, Qt::QueuedConnection);
        return false;
    }
    m_isBusy = true;
    return true;
}

void X11DragOut::startText(QWidget &source, const TextDrag &drag, std::function<void(Outcome)> ended)
{
    if (!take(source, ended)) {
        return;
    }
    auto content = std::make_unique<QMimeData>();
    content->setText(drag.text);
    runLater(std::make_shared<Start>(
        Start{&source, std::move(content), drag.picture, drag.hotSpot, std::move(ended), Task()}));
}

void X11DragOut::start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended)
{
    if (!take(source, ended)) {
        return;
    }
    // Shared by the two that may begin the drag, the portal's answer and the end of patience: the first one takes it.
    const auto pending = std::make_shared<std::unique_ptr<Start>>(std::make_unique<Start>(
        Start{&source, mimeDataOf(ClipboardFiles{drag.paths}), drag.picture, drag.hotSpot, std::move(ended), Task()}));
    const auto begin = [this, pending](const QString &key) {
        if (*pending) {
            (*pending)->patience.cancel();
            if (!key.isEmpty()) {
                (*pending)->content->setData(QStringLiteral("application/vnd.portal.filetransfer"), key.toUtf8());
            }
            runLater(std::move(*pending));
        }
    };
    (*pending)->patience = m_scheduler.after(kPortalPatience, &m_fileTransfer, [begin] { begin({}); });
    m_fileTransfer.offer(drag.paths, &source, begin);
}

void X11DragOut::runLater(std::shared_ptr<Start> start)
{
    // From a clean stack: the drag runs an event loop of its own.
    QMetaObject::invokeMethod(
        &m_fileTransfer, [this, start = std::move(start)] { run(*start); }, Qt::QueuedConnection);
}

void X11DragOut::run(Start &start)
{
    const auto pointer = m_pointer.state();
    if (!start.source || !pointer || !pointer->isButtonHeld) {
        m_isBusy = false;
        if (start.source) {
            start.ended(Outcome::Cancelled); // let go already: the toolkit would drag until the next click
        }
        return;
    }
    // Not of the source, which may go while the drag goes on. The toolkit deletes it when it has ended.
    auto &drag = makeChild<QDrag>(QCoreApplication::instance());
    drag.setMimeData(start.content.release());
    drag.setPixmap(start.picture);
    drag.setHotSpot(start.hotSpot);
    const QPointer<QObject> self(&m_fileTransfer); // the program may end meanwhile
    // Let go after the look above and before the toolkit has the pointer, it would drag until the next click.
    int looksWithoutButton = 0;
    const Task watch = m_scheduler.every(kButtonLook, &m_fileTransfer, [this, &looksWithoutButton] {
        const auto now = m_pointer.state();
        looksWithoutButton = now && !now->isButtonHeld ? looksWithoutButton + 1 : 0;
        if (looksWithoutButton == kLooksToBelieve)
            QDrag::cancel();
    });
    const Qt::DropAction action = drag.exec(Qt::CopyAction, Qt::CopyAction);
    if (self) {
        m_isBusy = false;
    }
    if (start.source) {
        start.ended(action == Qt::IgnoreAction ? Outcome::Cancelled : Outcome::Dropped);
    }
}

} // namespace ostrelle
