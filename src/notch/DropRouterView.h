#pragma once

#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QList>
#include <QProperty>
#include <QWidget>

#include <vector>

namespace ostrelle {

class ContentFade;
class DropZone;
class NotchViewModel;
class ToolRegistry;

/// The row of landing zones that the open panel shows while files are dragged over it. Tells the view model where the
/// zones are and shows which one the drag is over. Takes no pointer events: the drag comes from elsewhere. Main thread.
class DropRouterView : public QWidget
{
    Q_OBJECT
public:
    DropRouterView(const ControlContext &context, NotchViewModel &viewModel, const ToolRegistry &registry,
                   QWidget *parent);

    void setTargets(const QList<KestroModule> &targets);
    /// Hangs the row from this point of the parent, and reports where its zones are while they are offered.
    void place(const QPointF &topCentre);
    /// Something moves: `visible` is where the surface lets content be seen, in the parent's coordinates.
    void setLook(double opacity, const QRectF &visible);
    /// Nothing moves any more: the row is painted as it is.
    void settle();

private:
    void showHovered();

    ControlContext m_context;
    NotchViewModel &m_viewModel;
    const ToolRegistry &m_registry;
    ContentFade &m_fade;
    std::vector<DropZone *> m_zones; ///< children
    QPropertyNotifier m_hoveredWatch;
};

} // namespace ostrelle
