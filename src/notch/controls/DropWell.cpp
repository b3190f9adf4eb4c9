#include "notch/controls/DropWell.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QChildEvent>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kRadius = 14;
constexpr double kBorder = 1;
constexpr double kDash = 4;
constexpr double kTargetResponse = 0.22;

} // namespace

DropWell::DropWell(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_targeted(context, 0, [this] { update(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
}

void DropWell::setTargeted(bool targeted)
{
    m_targeted.animateTo(targeted ? 1 : 0, Motion::damped(kTargetResponse));
}

void DropWell::childEvent(QChildEvent *event)
{
    if (event->polished())
        arrange();
}

void DropWell::resizeEvent(QResizeEvent *)
{
    arrange();
}

void DropWell::arrange()
{
    for (QObject *child : children()) {
        if (child->isWidgetType())
            static_cast<QWidget *>(child)->setGeometry(rect());
    }
}

void DropWell::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    const double targeted = m_targeted.value();
    const double inset = kBorder / 2;
    const QRectF frame = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(palette.accentWell, targeted));
    painter.drawRoundedRect(frame, kRadius, kRadius);
    painter.setBrush(Qt::NoBrush);
    if (targeted < 1) {
        QPen dashed(faded(palette.wellEdge, 1 - targeted), kBorder, Qt::CustomDashLine, Qt::FlatCap);
        dashed.setDashPattern({kDash / kBorder, kDash / kBorder});
        painter.setPen(dashed);
        painter.drawRoundedRect(frame, kRadius, kRadius);
    }
    if (targeted > 0) {
        painter.setPen(QPen(faded(palette.accentEdge, targeted), kBorder));
        painter.drawRoundedRect(frame, kRadius, kRadius);
    }
}

} // namespace ostrelle
