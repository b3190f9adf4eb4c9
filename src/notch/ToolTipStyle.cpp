#include "notch/ToolTipStyle.h"

#include "notch/PopupStyle.h"

#include <QPainter>
#include <QStyleOption>

namespace ostrelle {
namespace {

constexpr double kTipRadius = 6;
constexpr int kAirAroundText = 4;

} // namespace

void ToolTipStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const
{
    if (element != PE_PanelTipLabel) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(option->rect, option->palette.toolTipBase());
    painter->setPen(option->palette.color(QPalette::WindowText));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), kTipRadius - 0.5, kTipRadius - 0.5);
    painter->restore();
}

int ToolTipStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    return metric == PM_ToolTipLabelFrameWidth ? kAirAroundText : QProxyStyle::pixelMetric(metric, option, widget);
}

int ToolTipStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *answer) const
{
    auto *mask = qstyleoption_cast<QStyleHintReturnMask *>(answer);
    if (hint != SH_ToolTip_Mask || mask == nullptr || option == nullptr)
        return QProxyStyle::styleHint(hint, option, widget, answer);
    mask->region = QRegion(roundedMask(option->rect.size(), kTipRadius));
    return 1;
}

} // namespace ostrelle
