#include "windows/controls/RowButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/SettingsGroup.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kHeight = 40;
constexpr double kPadding = 12;
constexpr double kLineHeight = 16;
/// Within its container, which the ring must not leave.
constexpr double kRingInset = 5;

} // namespace

RowButton::RowButton(const ControlContext &context, const QString &label, QWidget *parent)
    : NotchButton(context, parent)
{
    setText(label);
    setAccessibleName(label);
    setFocusPolicy(Qt::TabFocus);
    setFixedHeight(kHeight);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

QRectF RowButton::shape() const
{
    return QRectF(rect()).adjusted(kRingInset, kRingInset, -kRingInset, -kRingInset);
}

double RowButton::cornerRadius() const
{
    return SettingsGroup::kRadius - kRingInset;
}

void RowButton::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacityOf(*this));
    const double touched = std::clamp(std::max(hoverAmount(), pressAmount()), 0.0, 1.0);
    const QColor fill = mixed(faded(colors.hover, touched), colors.chosen, std::clamp(pressAmount(), 0.0, 1.0));
    painter.fillPath(SettingsGroup::rowShape(*this), fill);
    SettingsGroup::paintDivider(painter, *this, appearance(), kPadding);
    paintLine(painter, text(), Theme::font(FontRole::Body), kLineHeight, {kPadding, (height() - kLineHeight) / 2},
              colors.dangerInk);
}

} // namespace ostrelle
