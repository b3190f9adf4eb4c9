#include "inspectors/RefusalNote.h"

#include "records/Motion.h"

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kNoteResponse = 0.22;
/// So little that the words stand clear of the facts, and enough that nobody thinks them gone.
constexpr double kLeftBelow = 0.06;

} // namespace

RefusalNote::RefusalNote(const ControlContext &context, const Content &refusal, QWidget *parent)
    : EmptyStateView(context, refusal, parent)
    , m_shown(context, 0, [this] { Q_EMIT faded(); })
{
    hide();
}

void RefusalNote::setShown(bool shown)
{
    if (shown)
        appear();
    else
        disappear();
    m_shown.animateTo(shown ? 1 : 0, Motion::damped(kNoteResponse));
}

double RefusalNote::remainder() const
{
    return 1 - (1 - kLeftBelow) * std::clamp(m_shown.value(), 0.0, 1.0);
}

} // namespace ostrelle
