#pragma once

#include "notch/ToolView.h"
#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

namespace ostrelle {

class EmptyStateView;

/// What a tool shows that has no view yet: what it is and what it is for.
class UnbuiltToolView : public ToolView
{
    Q_OBJECT
public:
    UnbuiltToolView(const ControlContext &context, KestroModule module, QWidget *parent);

    std::optional<double> wantedBodyHeight() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    EmptyStateView &m_state;
};

} // namespace ostrelle
