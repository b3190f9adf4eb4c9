#pragma once

#include "foundation/Task.h"

#include <QProperty>
#include <QSizeF>

#include <functional>
#include <optional>

class QObject;

namespace ostrelle {

class TaskScheduler;

/// The size of the panel window over time: it grows at once, and shrinks only when nothing has asked for more for 0.52
/// s, so that a closing surface is never cut off. Main thread.
class WindowSizer
{
public:
    /// Asked when it is time to shrink: the size to take, or nothing when it must not shrink now.
    using SettledSize = std::function<std::optional<QSizeF>()>;

    WindowSizer(TaskScheduler &scheduler, QObject &owner, SettledSize settledSize);

    QSizeF size() const { return m_size; }
    QBindable<QSizeF> bindableSize() const { return &m_size; }

    void request(const QSizeF &desired);
    /// Takes the size at once; nothing remains to be shrunk.
    void jumpTo(const QSizeF &size);

private:
    TaskScheduler &m_scheduler;
    QObject &m_owner;
    SettledSize m_settledSize;
    QProperty<QSizeF> m_size;
    Task m_shrink;
};

} // namespace ostrelle
