#include "inspectors/Swatch.h"

#include "inspectors/ColorPaint.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/Hairline.h"
#include "records/Motion.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kSwatchRadius = 6.5;
constexpr double kHoveredScale = 1.09;
constexpr double kPressedSwatch = 0.94;
constexpr double kRingGap = 1.5;
constexpr double kRing = 1.5;

/// Goes through the whole tool, not from button to button.
bool isForTool(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

} // namespace

Swatch::Swatch(const ControlContext &context, const SampledColor &color, QWidget *parent)
    : NotchButton(context, parent)
    , m_color(color)
    , m_current(context, 0, [this] { update(); })
{
    setHelp(color.hexString());
    setFixedSize(sizeHint());
    setTabStop(false);
}

void Swatch::setCurrent(bool current)
{
    m_current.animateTo(current ? 1 : 0, Motion::hover());
    // One that is not on screen yet has it from the start.
    if (!isVisible())
        m_current.jumpTo(current ? 1 : 0);
    setAccessibleDescription(current ? QStringLiteral("On display") : QString());
}

void Swatch::setTabStop(bool isStop)
{
    setFocusPolicy(isStop ? Qt::StrongFocus : Qt::ClickFocus);
}

QSize Swatch::sizeHint() const
{
    return {kSide + 2 * kOverhang, kSide + 2 * kOverhang};
}

QRectF Swatch::shape() const
{
    return QRectF(rect()).adjusted(kOverhang, kOverhang, -kOverhang, -kOverhang);
}

double Swatch::cornerRadius() const
{
    return kSwatchRadius;
}

bool Swatch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

void Swatch::focusInEvent(QFocusEvent *event)
{
    NotchButton::focusInEvent(event);
    Q_EMIT focused();
}

void Swatch::keyPressEvent(QKeyEvent *event)
{
    if (isForTool(event->key()))
        event->ignore();
    else
        NotchButton::keyPressEvent(event);
}

void Swatch::contextMenuEvent(QContextMenuEvent *event)
{
    const bool isFromKey = event->reason() == QContextMenuEvent::Keyboard;
    Q_EMIT menuRequested(isFromKey ? shape().center() : QPointF(event->pos()));
}

void Swatch::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    const double current = std::clamp(m_current.value(), 0.0, 1.0);
    const double hovered = appearance().reducesMotion() ? 1 : 1 + (kHoveredScale - 1) * hoverAmount();
    const double scale = hovered * pressScale(kPressedSwatch);
    const QRectF box = shape();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(std::clamp(presence(), 0.0, 1.0));
    painter.translate(box.center());
    painter.scale(scale, scale);
    painter.translate(-box.center());
    const auto around = [&](double reach) {
        const QRectF rect = box.adjusted(-reach, -reach, reach, reach);
        painter.drawRoundedRect(rect, kSwatchRadius + reach, kSwatchRadius + reach);
    };

    painter.setPen(Qt::NoPen);
    if (current > 0) {
        painter.setBrush(faded(palette.surfaceTone, current));
        around(kRingGap);
    }
    painter.setBrush(paintColor(m_color));
    around(0);
    painter.setBrush(Qt::NoBrush);
    const double edge = hairlineThickness(painter);
    painter.setPen(QPen(palette.swatchEdge, edge));
    around(-edge / 2);
    if (current > 0) {
        painter.setPen(QPen(faded(palette.swatchRing, current), kRing));
        around(kRingGap + kRing / 2);
    }
}

} // namespace ostrelle
