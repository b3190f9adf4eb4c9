#include "windows/controls/RecorderButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/TabularText.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"
#include "windows/controls/KeySigns.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr int kHeight = 24;
constexpr double kLeastLabel = 78;
constexpr double kPadding = 9;
constexpr double kRadius = 6;
constexpr double kRecordingEdge = 1.2;
constexpr double kPressedOpacity = 0.75;
constexpr double kFontSize = 12;

QFont labelFont()
{
    return Theme::interfaceFont(kFontSize, QFont::Medium);
}

} // namespace

RecorderButton::RecorderButton(const ControlContext &context, QWidget *parent)
    : NotchButton(context, parent)
{
    setFocusPolicy(Qt::TabFocus);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void RecorderButton::setState(const QString &label, State state)
{
    m_state = state;
    setText(label);
    setAccessibleName(label);
    updateGeometry();
    updateAura();
    update();
}

QSize RecorderButton::sizeHint() const
{
    const double label = std::max(kLeastLabel, tabularAdvance(labelFont(), text()));
    return {static_cast<int>(std::ceil(label + 2 * kPadding)), kHeight};
}

double RecorderButton::cornerRadius() const
{
    return kRadius;
}

/// Outside of the fill.
void RecorderButton::paintGlow(QPainter &painter) const
{
    const double reach = kRecordingEdge / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(faded(Theme::kAccentVivid, opacityOf(*this)), kRecordingEdge));
    painter.drawRoundedRect(shape().adjusted(-reach, -reach, reach, reach), kRadius + reach, kRadius + reach);
}

void RecorderButton::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(opacityOf(*this) * (1 + (kPressedOpacity - 1) * std::clamp(pressAmount(), 0.0, 1.0)));
    const double touched =
        m_state == State::Recording ? 1 : std::clamp(std::max(hoverAmount(), pressAmount()), 0.0, 1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(colors.control, colors.controlHover, touched));
    painter.drawRoundedRect(shape(), kRadius, kRadius);

    const QFont font = labelFont();
    painter.setFont(font);
    painter.setPen(m_state == State::NotSet ? colors.text2 : colors.text1);
    const double advance = tabularAdvance(font, text());
    paintKeySigns(painter, QRectF((width() - advance) / 2, 0, advance, height()), text());
}

} // namespace ostrelle
