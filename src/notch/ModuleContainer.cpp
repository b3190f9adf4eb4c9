#include "notch/ModuleContainer.h"

#include "foundation/MakeChild.h"
#include "notch/ContentFade.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchViewModel.h"
#include "notch/ToolRegistry.h"
#include "notch/ToolView.h"

#include <QEvent>
#include <QPixmap>

namespace ostrelle {

ModuleContainer::ModuleContainer(const ControlContext &context, const ToolRegistry &registry, KestroModule module,
                                 QWidget *parent)
    : QWidget(parent)
    , m_view(registry.makeView(module, context, *this))
    , m_fade(makeChild<ContentFade>(this))
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleName(title(module));
    setGraphicsEffect(&m_fade);
    m_fade.setEnabled(false);
    connect(&m_view, &ToolView::headerActionsChanged, this, &ModuleContainer::adoptActions);
    adoptActions();
}

void ModuleContainer::setLook(double opacity, const QRectF &visible)
{
    m_opacity = opacity;
    m_fade.setLook(opacity, visible.translated(-pos()));
    if (!m_fade.isEnabled())
        m_fade.setEnabled(true);
}

void ModuleContainer::settle()
{
    m_opacity = 1;
    if (m_fade.isEnabled())
        m_fade.setEnabled(false);
}

QPixmap ModuleContainer::picture()
{
    m_fade.setEnabled(false);
    return grab();
}

void ModuleContainer::adoptActions()
{
    const QList<QWidget *> actions = m_view.headerActions();
    for (const QPointer<QWidget> &previous : std::exchange(m_actions, {})) {
        if (previous && !actions.contains(previous))
            previous->hide();
    }
    for (QWidget *action : actions) {
        if (action->parentWidget() != this)
            action->setParent(this);
        action->show();
        m_actions.append(action);
    }
    arrange();
}

void ModuleContainer::resizeEvent(QResizeEvent *)
{
    arrange();
}

void ModuleContainer::arrange()
{
    const int top = static_cast<int>(NotchViewModel::kHeaderHeight);
    m_view.setGeometry(0, top, width(), std::max(height() - top, 0));
    double right = width() - chrome::kHeaderPadding;
    for (auto action = m_actions.rbegin(); action != m_actions.rend(); ++action) {
        if (!*action)
            continue;
        const QSize size = (*action)->sizeHint();
        const double y = (chrome::kHeaderHeight - size.height()) / 2;
        (*action)->setGeometry(QRect(QPointF(right - size.width(), y).toPoint(), size));
        right -= size.width() + chrome::kActionSpacing;
    }
}

} // namespace ostrelle
