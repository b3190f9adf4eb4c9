#include "notch/UnbuiltToolView.h"

#include "foundation/MakeChild.h"
#include "notch/controls/EmptyStateView.h"

namespace ostrelle {
namespace {

constexpr double kBodyHeight = 226;

} // namespace

UnbuiltToolView::UnbuiltToolView(const ControlContext &context, KestroModule module, QWidget *parent)
    : ToolView(parent)
    , m_state(makeChild<EmptyStateView>(
          this, context,
          EmptyStateView::Content{.symbol = symbol(module), .message = title(module), .hint = blurb(module)}))
{
}

std::optional<double> UnbuiltToolView::wantedBodyHeight() const
{
    return kBodyHeight;
}

void UnbuiltToolView::resizeEvent(QResizeEvent *)
{
    m_state.setGeometry(rect());
}

} // namespace ostrelle
