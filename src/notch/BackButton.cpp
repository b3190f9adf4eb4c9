#include "notch/BackButton.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kChevronSize = 9.5;
constexpr double kChevronCentre = 11.5;
constexpr double kChevronTravel = 1.5;
constexpr double kSymbolSize = 12.5;
constexpr double kSymbolCentre = 29.5;
constexpr double kPressedScale = 0.94;
constexpr double kPressedOpacity = 0.75;

QRectF boxAround(double x, double height)
{
    return {x - height / 2, 0, height, height};
}

} // namespace

BackButton::BackButton(const ControlContext &context, QWidget *parent)
    : NotchButton(context, parent)
{
    setFixedSize(kWidth, kHeight);
    setHelp(QStringLiteral("Back to tools"));
    setFocusPolicy(Qt::TabFocus);
}

void BackButton::setSymbols(const Symbols &symbols)
{
    if (symbols == m_symbols)
        return;
    m_symbols = symbols;
    update();
}

void BackButton::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    const double opacity = presence() * (1 + (kPressedOpacity - 1) * pressAmount());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = shape().center();
    painter.translate(centre);
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-centre);
    if (hoverAmount() > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(palette.hoverTint, hoverAmount() * opacity));
        painter.drawRoundedRect(shape(), cornerRadius(), cornerRadius());
    }
    const QColor color = mixed(palette.text2, palette.text1, hoverAmount());
    const double travel = appearance().reducesMotion() ? 0 : kChevronTravel * hoverAmount();
    paintGlyph(painter, u"chevron.left", boxAround(kChevronCentre - travel, kHeight), kChevronSize,
               GlyphWeight::Semibold, faded(color, opacity));
    const auto paintSymbol = [&](const QString &symbol, double amount) {
        if (!symbol.isEmpty() && amount > 0)
            paintGlyph(painter, symbol, boxAround(kSymbolCentre, kHeight), kSymbolSize, GlyphWeight::Medium,
                       faded(color, opacity * amount));
    };
    paintSymbol(m_symbols.leaving, m_symbols.leavingOpacity);
    paintSymbol(m_symbols.arriving, m_symbols.arrivingOpacity);
}

} // namespace ostrelle
