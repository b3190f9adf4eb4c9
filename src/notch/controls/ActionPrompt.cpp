#include "notch/controls/ActionPrompt.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/FilledButton.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kPromptSquare = 1.25; ///< a symbol's square, as a multiple of its system size
constexpr int kPromptSymbolGap = 9;
constexpr int kPromptLine = 15;
constexpr int kPromptButtonGap = 12;

} // namespace

ActionPrompt::ActionPrompt(const ControlContext &context, Content content, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_content(std::move(content))
    , m_button(makeChild<FilledButton>(this, context, m_content.action))
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(m_content.message);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

int ActionPrompt::symbolBox() const
{
    return static_cast<int>(std::ceil(m_content.symbolSize * kPromptSquare));
}

int ActionPrompt::top() const
{
    const int content = symbolBox() + kPromptSymbolGap + kPromptLine + kPromptButtonGap + m_button.sizeHint().height();
    return (height() - content) / 2;
}

void ActionPrompt::resizeEvent(QResizeEvent *)
{
    const QSize button = m_button.sizeHint();
    const int y = top() + symbolBox() + kPromptSymbolGap + kPromptLine + kPromptButtonGap;
    m_button.setGeometry(QRect(QPoint((width() - button.width()) / 2, y), button));
}

void ActionPrompt::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = m_context.appearance.palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGlyph(painter, m_content.symbol, QRectF(0, top(), width(), symbolBox()), m_content.symbolSize,
               GlyphWeight::Light, palette.text3);
    painter.setFont(Theme::font(FontRole::Caption));
    painter.setPen(palette.text2);
    painter.drawText(QRectF(0, top() + symbolBox() + kPromptSymbolGap, width(), kPromptLine), Qt::AlignCenter,
                     m_content.message);
}

} // namespace ostrelle
