#include "notch/controls/ControlAura.h"

#include <QEvent>
#include <QPainter>

namespace ostrelle {

ControlAura::ControlAura(QWidget &control, int reach, std::function<void(QPainter &)> paint, QWidget *parent)
    : QRubberBand(QRubberBand::Rectangle, parent)
    , m_control(control)
    , m_reach(reach)
    , m_paint(std::move(paint))
{
    // By this name the toolkit leaves it out of what it tells assistive technology.
    setObjectName(QStringLiteral("qt_rubberband"));
    control.installEventFilter(this);
    follow();
}

void ControlAura::end()
{
    m_control.removeEventFilter(this);
    hide();
    deleteLater();
}

void ControlAura::follow()
{
    const bool isWithin = parentWidget()->isAncestorOf(&m_control);
    if (isWithin) {
        const QRect place(m_control.mapTo(parentWidget(), QPoint()), m_control.size());
        setGeometry(place.adjusted(-m_reach, -m_reach, m_reach, m_reach));
    }
    setVisible(isWithin && m_control.isVisible());
}

bool ControlAura::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        follow();
        break;
    default:
        break;
    }
    return QRubberBand::eventFilter(watched, event);
}

void ControlAura::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(m_reach, m_reach);
    m_paint(painter);
}

} // namespace ostrelle
