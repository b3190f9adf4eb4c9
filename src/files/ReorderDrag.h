#pragma once

#include "files/ProjectsService.h"
#include "notch/FrameClock.h"
#include "notch/controls/ControlContext.h"

#include <QUuid>

#include <functional>

namespace ostrelle {

class RowListView;

/// A row that the pointer drags to another place of its list. It follows the pointer; as soon as the pointer is on the
/// place of another row, it asks for that one. At an edge with more beyond, the list scrolls. Positions are vertical,
/// in the coordinates of the list's viewport. Main thread; after destruction nothing is called.
class ReorderDrag : private FrameClock::Client
{
public:
    /// Makes the row stand at `place`, before it returns.
    using Move = std::function<void(const QUuid &row, int place, ProjectsService::Step step)>;

    ReorderDrag(const ControlContext &context, RowListView &list, Move move);
    ~ReorderDrag() override;
    ReorderDrag(const ReorderDrag &) = delete;
    ReorderDrag &operator=(const ReorderDrag &) = delete;

    bool isRunning() const { return !m_row.isNull(); }
    /// The dragged row, or null.
    QUuid row() const { return m_row; }
    /// How far the dragged row is from its place.
    double offset() const;

    /// `row` was pressed at `pressed`.
    void start(const QUuid &row, double pressed);
    void follow(double pointer);
    /// The row takes the place that it has.
    void stop();
    /// The row goes back to where it was.
    void cancel();

private:
    bool advance(MonotonicTime now) override;
    void takePlace();
    void moveTo(int place);
    /// -1 to 1: how far beyond the edge zones the pointer is.
    double pull() const;

    FrameClock &m_clock;
    RowListView &m_list;
    Move m_move;
    QUuid m_row;
    int m_startRow = 0;
    double m_grip = 0; ///< from the row's top to the pointer
    double m_pointer = 0;
    bool m_hasMoved = false;
    MonotonicTime m_lastFrame{};
};

} // namespace ostrelle
