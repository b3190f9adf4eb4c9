#include "inspectors/LargeSwatch.h"

#include "inspectors/ColorPaint.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/Hairline.h"
#include "records/Motion.h"

#include <QContextMenuEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kLargeRadius = 12;
constexpr double kHexLeft = 13;
constexpr double kHexLine = 20;
constexpr double kHexBelow = 9.5;
constexpr double kTurnResponse = 0.22;

} // namespace

LargeSwatch::LargeSwatch(const ControlContext &context, QWidget *parent)
    : NotchButton(context, parent)
    , m_turn(context, 1, [this] { update(); })
{
    setFocusPolicy(Qt::TabFocus);
    setToolTip(QStringLiteral("Copy HEX"));
    setFixedSize(kSize);
}

void LargeSwatch::setColor(const SampledColor &color)
{
    m_from = shownColor();
    m_color = color;
    setAccessibleName(QStringLiteral("Color ") + color.hexString());
    m_turn.jumpTo(isVisible() ? 0 : 1);
    m_turn.animateTo(1, Motion::damped(kTurnResponse));
    update();
}

QColor LargeSwatch::shownColor() const
{
    const double turn = std::clamp(m_turn.value(), 0.0, 1.0);
    return turn == 1 ? paintColor(m_color) : mixed(m_from, paintColor(m_color), turn);
}

double LargeSwatch::cornerRadius() const
{
    return kLargeRadius;
}

void LargeSwatch::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isFromKey = event->reason() == QContextMenuEvent::Keyboard;
    Q_EMIT menuRequested(isFromKey ? shape().center() : QPointF(event->pos()));
}

void LargeSwatch::paintEvent(QPaintEvent *)
{
    const QRectF box = shape();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shownColor());
    painter.drawRoundedRect(box, kLargeRadius, kLargeRadius);
    const double edge = hairlineThickness(painter);
    const double inset = edge / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(appearance().palette().swatchEdge, edge));
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), kLargeRadius - inset, kLargeRadius - inset);

    painter.setFont(Theme::font(FontRole::MonoLarge));
    painter.setPen(readableOn(m_color));
    painter.drawText(
        box.adjusted(kHexLeft, 0, -kHexLeft, -kHexBelow).adjusted(0, box.height() - kHexBelow - kHexLine, 0, 0),
        Qt::AlignLeft | Qt::AlignVCenter, m_color.hexString());
}

} // namespace ostrelle
