#include "windows/controls/SwitchButton.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr QSize kOrdinarySize(34, 20);
constexpr QSize kSmallSize(27, 16);
constexpr double kInset = 2;
/// How much wider a pressed thumb is, toward the middle.
constexpr double kPressedStretch = 3;
constexpr double kThumbEdge = 0.06;

} // namespace

SwitchButton::SwitchButton(const ControlContext &context, Size size, QWidget *parent)
    : NotchButton(context, parent)
    , m_position(context, 0, [this] { update(); })
{
    setFixedSize(size == Size::Small ? kSmallSize : kOrdinarySize);
    setCheckable(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleRole(*this, QAccessible::CheckBox);
    connect(this, &QAbstractButton::toggled, this, [this](bool isOn) {
        if (isVisible())
            m_position.animateTo(isOn ? 1 : 0, Motion::hover());
        else
            m_position.jumpTo(isOn ? 1 : 0);
    });
    connect(this, &QAbstractButton::clicked, this, &SwitchButton::switched);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void SwitchButton::showState(bool isOn)
{
    setChecked(isOn);
}

/// With Alt the arrows are not those that move the focus, but whatever the row makes of them.
void SwitchButton::keyPressEvent(QKeyEvent *event)
{
    if (event->modifiers().testFlag(Qt::AltModifier))
        event->ignore();
    else
        NotchButton::keyPressEvent(event);
}

void SwitchButton::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    const double on = std::clamp(m_position.value(), 0.0, 1.0);
    const double touched = std::clamp(std::max(hoverAmount(), pressAmount()), 0.0, 1.0);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(presence() * opacityOf(*this));
    painter.setPen(Qt::NoPen);
    const QColor off = mixed(colors.switchOff, colors.switchOffHover, touched);
    painter.setBrush(mixed(off, mixed(colors.switchOn, colors.switchOnHover, touched), on));
    painter.drawRoundedRect(shape(), cornerRadius(), cornerRadius());

    const double side = height() - 2 * kInset;
    const double stretch = kPressedStretch * std::clamp(pressAmount(), 0.0, 1.0);
    const double travel = width() - 2 * kInset - side - stretch;
    const QRectF thumb(kInset + travel * on, kInset, side + stretch, side);
    painter.setBrush(faded(Qt::black, kThumbEdge));
    painter.drawRoundedRect(thumb.translated(0, 0.5), side / 2, side / 2);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(thumb, side / 2, side / 2);
}

} // namespace ostrelle
