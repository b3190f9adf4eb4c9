#pragma once

#include "notch/controls/ControlContext.h"
#include "records/KestroModule.h"

#include <QList>
#include <QPointer>
#include <QWidget>

namespace ostrelle {

class ContentFade;
class ToolRegistry;
class ToolView;

/// One visit to a tool: its view below header and strip, and its actions at the trailing end of the header. Made when
/// the tool is chosen, gone when it is left.
class ModuleContainer : public QWidget
{
    Q_OBJECT
public:
    ModuleContainer(const ControlContext &context, const ToolRegistry &registry, KestroModule module, QWidget *parent);

    ToolView &view() { return m_view; }

    /// `visible` is where the surface lets content be seen, in the parent's coordinates.
    void setLook(double opacity, const QRectF &visible);
    /// Nothing moves any more: the view is painted as it is.
    void settle();
    double opacity() const { return m_opacity; }
    /// The whole visit as it looks now, at full opacity.
    QPixmap picture();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void adoptActions();
    void arrange();

    ToolView &m_view;
    QList<QPointer<QWidget>> m_actions;
    ContentFade &m_fade;
    double m_opacity = 1;
};

} // namespace ostrelle
