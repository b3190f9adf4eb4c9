#pragma once

#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QList>
#include <QProperty>
#include <QWidget>

#include <vector>

namespace ostrelle {

class DropZone;
class NotchViewModel;
class OutlineFade;
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
    /// Hangs the row `travel` below this point of the parent, where it comes to rest, and reports while zones are
    /// offered where they will be then.
    void place(const QPointF &topCentre, double travel);
    /// Something moves: `outline` is the surface's, in the parent's coordinates.
    void setLook(double opacity, bool onDark, const QPainterPath &outline);
    /// Nothing moves any more: the row is painted as it is.
    void settle();

private:
    void showHovered();

    ControlContext m_context;
    NotchViewModel &m_viewModel;
    const ToolRegistry &m_registry;
    OutlineFade &m_fade;
    std::vector<DropZone *> m_zones; ///< children
    QPropertyNotifier m_hoveredWatch;
};

} // namespace ostrelle
