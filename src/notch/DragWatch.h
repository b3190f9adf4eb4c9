#pragma once

#include "foundation/Task.h"
#include "notch/DragRelease.h"

#include <QObject>

namespace ostrelle {

class DragSense;
class NotchViewModel;
class SettingsStore;
class TaskScheduler;

/// Notices that a drag with data has begun somewhere, without being a drop target: after a press elsewhere it looks
/// whether a button is held and the drag counter has moved since, and arms the drag catch. It looks when the counter
/// moves, and at intervals, which tell when the drag is over. Main thread.
class DragWatch
{
public:
    DragWatch(NotchViewModel &viewModel, SettingsStore &settings, TaskScheduler &scheduler, DragSense &dragSense);

    /// A button went down elsewhere: watches anew, if the user wants drags to be caught.
    void begin();

private:
    void look();
    void notice(Answer held);

    NotchViewModel &m_viewModel;
    SettingsStore &m_settings;
    TaskScheduler &m_scheduler;
    DragSense &m_dragSense;
    qint64 m_countAtPress = 0;
    DragRelease m_release;
    Task m_poll;
    QObject m_changes; ///< ends the listening to the counter
};

} // namespace ostrelle
