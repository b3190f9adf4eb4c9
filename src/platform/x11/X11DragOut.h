#pragma once

#include "platform/DragOut.h"
#include "platform/freedesktop/PortalFileTransfer.h"

#include <QPointer>
#include <QWidget>

#include <memory>

namespace ostrelle {

class TaskScheduler;
class X11RawPointer;

/// Drags out of the program's windows by the toolkit's drag, which is a source as every program knows it.
class X11DragOut final : public DragOut
{
    struct Start;

public:
    X11DragOut(TaskScheduler &scheduler, const X11RawPointer &pointer);

    void start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended) override;
    void startText(QWidget &source, const TextDrag &drag, std::function<void(Outcome)> ended) override;

private:
    /// Whether a drag may begin; one that may not is told so.
    bool take(QWidget &source, const std::function<void(Outcome)> &ended);
    void runLater(std::shared_ptr<Start> start);
    void run(Start &start);

    TaskScheduler &m_scheduler;
    const X11RawPointer &m_pointer;
    PortalFileTransfer m_fileTransfer;
    bool m_isBusy = false;
};

} // namespace ostrelle
