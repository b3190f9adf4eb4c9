#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QWidget>

namespace ostrelle {

/// Lies over a tool's content, as large as it, and frames it in the accent while files that it takes are dragged over
/// it. Passes the pointer through; hidden when it has faded out.
class DropOverlay : public QWidget
{
    Q_OBJECT
public:
    DropOverlay(const ControlContext &context, QWidget *parent);

    void setTargeted(bool targeted);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    ControlContext m_context;
    AnimatedNumber m_presence;
};

} // namespace ostrelle
