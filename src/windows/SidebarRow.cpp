#include "windows/SidebarRow.h"

#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowColors.h"
#include "windows/controls/WrappedText.h"

#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kHeight = 30;
constexpr double kRadius = 9;
constexpr double kSymbolSize = 13;
constexpr double kSymbolBox = 16;
constexpr double kSymbolX = 9;
constexpr double kTextX = 34;
constexpr double kLineHeight = 16;
/// The ring lies on the row's edge and not around it.
constexpr double kRingInset = 4;

} // namespace

SidebarRow::SidebarRow(const ControlContext &context, SettingsSection section, QWidget *parent)
    : NotchButton(context, parent)
    , m_section(section)
{
    setFixedHeight(kHeight);
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleRole(*this, QAccessible::RadioButton);
    setAccessibleName(title(section));
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

QRectF SidebarRow::shape() const
{
    return QRectF(rect()).adjusted(kRingInset, kRingInset, -kRingInset, -kRingInset);
}

double SidebarRow::cornerRadius() const
{
    return kRadius - kRingInset;
}

/// Moving among the rows is the sidebar's.
void SidebarRow::keyPressEvent(QKeyEvent *event)
{
    event->ignore();
}

void SidebarRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double hover = std::clamp(hoverAmount(), 0.0, 1.0);
    const double press = std::clamp(pressAmount(), 0.0, 1.0);
    const QColor quiet = mixed(faded(colors.hover, hover), colors.chosen, press);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? colors.chosen : quiet);
    painter.drawRoundedRect(rect(), kRadius, kRadius);
    const QColor ink = isChecked() ? colors.text1 : mixed(colors.text2, colors.text1, hover);
    paintGlyph(painter, symbol(m_section), QRectF(kSymbolX, 0, kSymbolBox, height()), kSymbolSize, GlyphWeight::Medium,
               isChecked() ? colors.accentInk : ink);
    paintLine(painter, title(m_section), Theme::font(isChecked() ? FontRole::BodyMedium : FontRole::Body), kLineHeight,
              {kTextX, (height() - kLineHeight) / 2}, ink);
}

} // namespace ostrelle
