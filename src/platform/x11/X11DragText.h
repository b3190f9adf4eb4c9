#pragma once

#include "platform/DragText.h"

namespace ostrelle {

class TaskScheduler;
class WatchConnection;

/// Asks the owner of XdndSelection (XDND 5), on a connection of the program's own.
class X11DragText final : public DragText
{
public:
    X11DragText(WatchConnection &watch, TaskScheduler &scheduler);

    void read(QObject &context, std::function<void(const QString &text)> answer) override;

private:
    class Question;

    WatchConnection &m_watch;
    TaskScheduler &m_scheduler;
};

} // namespace ostrelle
