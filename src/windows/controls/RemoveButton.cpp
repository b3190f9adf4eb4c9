#include "windows/controls/RemoveButton.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "windows/WindowColors.h"
#include "windows/controls/DisabledLook.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kSide = 18;
constexpr double kSymbolSize = 11.5;
constexpr double kPressedScale = 0.94;

} // namespace

RemoveButton::RemoveButton(const ControlContext &context, const QString &help, QWidget *parent)
    : NotchButton(context, parent)
{
    setFixedSize(kSide, kSide);
    setHelp(help);
    setFocusPolicy(Qt::TabFocus);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void RemoveButton::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(shape().center());
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-shape().center());
    const QColor ink = mixed(colors.text3, colors.text1, std::clamp(hoverAmount(), 0.0, 1.0));
    paintGlyph(painter, u"xmark.circle.fill", shape(), kSymbolSize, GlyphWeight::Medium, faded(ink, opacityOf(*this)));
}

} // namespace ostrelle
