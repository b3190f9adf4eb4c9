#include "platform/x11/X11DragOut.h"

#include "foundation/MakeChild.h"
#include "foundation/TaskScheduler.h"
#include "platform/freedesktop/OfferMimeData.h"
#include "platform/x11/X11RawPointer.h"

#include <QDrag>
#include <QMimeData>

#include <memory>
#include <utility>

namespace ostrelle {

using namespace std::chrono_literals;

namespace {

/// The types of a drag are fixed when it begins, so it begins when the portal has answered, or would be felt as late.
constexpr auto kPortalPatience = 80ms;

} // namespace

/// One call of start(), until the drag begins.
struct X11DragOut::Start
{
    QPointer<QWidget> source;
    FileDrag drag;
    std::function<void(Outcome)> ended;
    Task patience;
};

X11DragOut::X11DragOut(TaskScheduler &scheduler, const X11RawPointer &pointer)
    : m_scheduler(scheduler)
    , m_pointer(pointer)
{
}

void X11DragOut::start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended)
{
    // Shared by the two that may begin the drag, the portal's answer and the end of patience: the first one takes it.
    const auto pending = std::make_shared<std::unique_ptr<Start>>(
        std::make_unique<Start>(Start{&source, drag, std::move(ended), Task()}));
    const auto begin = [this, pending](const QString &key) {
        if (const std::unique_ptr<Start> start = std::exchange(*pending, nullptr)) {
            start->patience.cancel();
            run(*start, key);
        }
    };
    (*pending)->patience = m_scheduler.after(kPortalPatience, &source, [begin] { begin({}); });
    m_fileTransfer.offer(drag.paths, &source, begin);
}

void X11DragOut::run(const Start &start, const QString &portalKey)
{
    const auto pointer = m_pointer.state();
    if (!pointer || !pointer->isButtonHeld) {
        start.ended(Outcome::Cancelled); // let go already: the toolkit would drag until the next click
        return;
    }
    std::unique_ptr<QMimeData> data = mimeDataOf(ClipboardFiles{start.drag.paths});
    if (!portalKey.isEmpty()) {
        data->setData(QStringLiteral("application/vnd.portal.filetransfer"), portalKey.toUtf8());
    }
    auto &drag = makeChild<QDrag>(start.source.data()); // the toolkit deletes it when it has ended
    drag.setMimeData(data.release());
    drag.setPixmap(start.drag.picture);
    drag.setHotSpot(start.drag.hotSpot);
    // Runs an event loop of its own; nothing of this object is used afterwards, it may be gone.
    const Qt::DropAction action = drag.exec(Qt::CopyAction, Qt::CopyAction);
    if (start.source) {
        start.ended(action == Qt::IgnoreAction ? Outcome::Cancelled : Outcome::Dropped);
    }
}

} // namespace ostrelle
