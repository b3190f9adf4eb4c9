#include "windows/onboarding/HowRow.h"

#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "windows/WindowColors.h"
#include "windows/controls/CardGround.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kSymbolX = 14;
constexpr double kSymbolColumn = 22;
constexpr double kSymbolSize = 15;
constexpr double kTextX = 48;
constexpr double kTitleLine = 16;
constexpr double kGap = 2;
constexpr double kDetailLine = 15;

} // namespace

HowRow::HowRow(const ControlContext &context, const Content &content, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_content(content)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(content.title);
    setAccessibleDescription(content.detail);
    setFixedHeight(kHeight);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void HowRow::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!m_content.isFirst)
        paintRowLine(painter, *this, m_appearance, kTextX);
    paintGlyph(painter, m_content.symbol, QRectF(kSymbolX, 0, kSymbolColumn, kHeight), kSymbolSize, GlyphWeight::Medium,
               colors.text1);
    const double y = (kHeight - kTitleLine - kGap - kDetailLine) / 2;
    paintLine(painter, m_content.title, Theme::interfaceFont(12.5, QFont::Medium), kTitleLine, {kTextX, y},
              colors.text1);
    paintLine(painter, m_content.detail, Theme::interfaceFont(11.5, QFont::Normal), kDetailLine,
              {kTextX, y + kTitleLine + kGap}, colors.text2);
}

} // namespace ostrelle
