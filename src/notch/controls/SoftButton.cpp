#include "notch/controls/SoftButton.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/TabularText.h"

#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

constexpr double kPressedScale = 0.94;
constexpr double kPressedOpacity = 0.75;
constexpr double kDisabledOpacity = 0.35;
constexpr double kGap = 5;
/// A symbol's square, as a multiple of its system size.
constexpr double kSymbolSquare = 1.25;

double lineHeight(FontRole role)
{
    switch (role) {
    case FontRole::Micro:
        return 13;
    case FontRole::Caption:
    case FontRole::CaptionMedium:
        return 15;
    default:
        return 16;
    }
}

} // namespace

SoftButton::SoftButton(const ControlContext &context, Content content, QWidget *parent)
    : NotchButton(context, parent)
    , m_content(std::move(content))
{
    setHelp(m_content.help);
    if (!m_content.text.isEmpty())
        setAccessibleName(m_content.text);
    setFocusPolicy(Qt::TabFocus);
}

void SoftButton::setSymbol(const QString &symbol)
{
    m_content.symbol = symbol;
    update();
}

void SoftButton::setTone(Tone tone)
{
    m_tone = tone;
    update();
}

void SoftButton::setLabel(const QString &text)
{
    if (text == m_content.text)
        return;
    m_content.text = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

double SoftButton::symbolWidth() const
{
    return m_content.symbol.isEmpty() ? 0 : m_content.symbolSize * kSymbolSquare;
}

QSize SoftButton::sizeHint() const
{
    const double text = tabularAdvance(Theme::font(m_content.font), m_content.text);
    const double gap = symbolWidth() > 0 && text > 0 ? kGap : 0;
    const QMarginsF &padding = m_content.padding;
    const double width = padding.left() + symbolWidth() + gap + text + padding.right();
    const double height = padding.top() + std::max(symbolWidth(), lineHeight(m_content.font)) + padding.bottom();
    return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height))};
}

void SoftButton::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double opacity = (isEnabled() ? 1 : kDisabledOpacity) * (1 + (kPressedOpacity - 1) * pressAmount());
    const QPointF centre = shape().center();
    painter.translate(centre);
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-centre);

    const QColor rest = m_content.ground == Ground::Tinted ? palette.tileTint : faded(palette.hoverTint, 0);
    const QColor fill = isChecked() ? palette.accentSwitchedOn : mixed(rest, palette.hoverTint, hoverAmount());
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(fill, opacity * presence()));
    painter.drawRoundedRect(shape(), m_content.radius, m_content.radius);

    const QColor text = mixed(palette.text2, palette.text1, isChecked() ? 1 : hoverAmount());
    const QColor color = faded(m_tone == Tone::Accent ? palette.accent : text, opacity * presence());
    const QFont font = Theme::font(m_content.font);
    const double advance = tabularAdvance(font, m_content.text);
    const double gap = symbolWidth() > 0 && advance > 0 ? kGap : 0;
    double x = centre.x() - (symbolWidth() + gap + advance) / 2;
    if (symbolWidth() > 0)
        paintGlyph(painter, m_content.symbol, QRectF(x, 0, symbolWidth(), height()), m_content.symbolSize,
                   GlyphWeight::Medium, color);
    x += symbolWidth() + gap;
    painter.setFont(font);
    painter.setPen(color);
    drawTabular(painter, QRectF(x, 0, advance, height()), m_content.text);
}

} // namespace ostrelle
