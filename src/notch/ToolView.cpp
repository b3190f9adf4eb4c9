#include "notch/ToolView.h"

#include <QKeyEvent>

namespace ostrelle {

QList<QWidget *> ToolView::headerActions()
{
    return {};
}

void ToolView::appeared()
{
}

bool ToolView::acceptsDrop(const QStringList &) const
{
    return false;
}

void ToolView::setDropTargeted(bool)
{
}

bool ToolView::dropFiles(const QStringList &)
{
    return false;
}

void ToolView::undo()
{
}

void ToolView::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Undo))
        undo();
    else
        QWidget::keyPressEvent(event);
}

} // namespace ostrelle
