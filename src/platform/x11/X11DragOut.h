#pragma once

#include "platform/DragOut.h"
#include "platform/freedesktop/PortalFileTransfer.h"

#include <QPointer>
#include <QWidget>

namespace ostrelle {

class TaskScheduler;
class X11RawPointer;

/// Drags out of the panel by the toolkit's drag, which is a source as every program knows it.
class X11DragOut final : public DragOut
{
    struct Start;

public:
    X11DragOut(TaskScheduler &scheduler, const X11RawPointer &pointer);

    void start(QWidget &source, const FileDrag &drag, std::function<void(Outcome)> ended) override;

private:
    void run(const Start &start, const QString &portalKey);

    TaskScheduler &m_scheduler;
    const X11RawPointer &m_pointer;
    PortalFileTransfer m_fileTransfer;
    bool m_isBusy = false;
};

} // namespace ostrelle
