#include "files/ReorderDrag.h"

#include "notch/controls/RowListView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kEdge = RowListMeasures().fade;
/// Logical pixels per second with the pointer at the edge.
constexpr double kFastestScroll = 500;

} // namespace

ReorderDrag::ReorderDrag(const ControlContext &context, RowListView &list, Move move)
    : m_clock(context.clock)
    , m_list(list)
    , m_move(std::move(move))
{
}

ReorderDrag::~ReorderDrag()
{
    m_clock.remove(*this);
}

double ReorderDrag::offset() const
{
    const double top =
        std::clamp(m_pointer - m_grip, m_list.placeOf(0), m_list.placeOf(std::max(m_list.rowCount() - 1, 0)));
    return top - m_list.placeOf(m_list.rowOf(m_row));
}

void ReorderDrag::start(const QUuid &row, double pressed)
{
    m_startRow = m_list.rowOf(row);
    m_grip = pressed - m_list.rowRect(m_startRow).y();
    m_pointer = pressed;
    m_hasMoved = false;
    m_row = row;
}

void ReorderDrag::follow(double pointer)
{
    m_pointer = pointer;
    takePlace();
    if (pull() != 0) {
        m_lastFrame = m_clock.now();
        m_clock.add(*this);
    }
}

void ReorderDrag::takePlace()
{
    const double inView = std::clamp(m_pointer, 0.0, double(m_list.viewport()->height()));
    const auto place = static_cast<int>(std::floor((inView - m_list.placeOf(0)) / RowPlate::kPitch));
    moveTo(std::clamp(place, 0, std::max(m_list.rowCount() - 1, 0)));
}

void ReorderDrag::moveTo(int place)
{
    if (m_list.rowOf(m_row) == place)
        return;
    using Step = ProjectsService::Step;
    m_move(m_row, place, std::exchange(m_hasMoved, true) ? Step::Further : Step::First);
}

void ReorderDrag::stop()
{
    m_row = {};
}

void ReorderDrag::cancel()
{
    moveTo(std::min(m_startRow, m_list.rowCount() - 1));
    stop();
}

double ReorderDrag::pull() const
{
    const double height = m_list.viewport()->height();
    if (m_pointer < kEdge)
        return std::max((m_pointer - kEdge) / kEdge, -1.0);
    return std::clamp((m_pointer - (height - kEdge)) / kEdge, 0.0, 1.0);
}

bool ReorderDrag::advance(MonotonicTime now)
{
    const double seconds = std::chrono::duration<double>(now - std::exchange(m_lastFrame, now)).count();
    if (!isRunning() || pull() == 0)
        return false;
    m_list.scrollBy(pull() * kFastestScroll * seconds);
    takePlace();
    return true;
}

} // namespace ostrelle
