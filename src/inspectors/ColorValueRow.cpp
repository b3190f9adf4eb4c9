#include "inspectors/ColorValueRow.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kRowRadius = 11;
constexpr double kLabelLeft = 13;
constexpr double kValueLeft = 57;
constexpr double kMarkRight = 19.5; ///< its middle, from the trailing edge
constexpr double kMarkBox = 16;
constexpr double kMarkSize = 11;
constexpr double kPressedRow = 0.985;
constexpr double kMarkFade = 0.16;

} // namespace

ColorValueRow::ColorValueRow(const ControlContext &context, ColorForm form, QWidget *parent)
    : NotchButton(context, parent)
    , m_form(form)
    , m_copied(context, 0, [this] { update(); })
{
    setFocusPolicy(Qt::TabFocus);
    setFixedHeight(kHeight);
    setToolTip(QStringLiteral("Copy ") + colorFormLabel(form));
}

void ColorValueRow::setValue(const QString &value)
{
    m_value = value;
    setAccessibleName(colorFormLabel(m_form) + u' ' + value);
    update();
}

void ColorValueRow::setCopied(bool copied)
{
    m_copied.fadeTo(copied ? 1 : 0, Motion::fade(kMarkFade));
    setAccessibleDescription(copied ? QStringLiteral("Copied") : QString());
}

double ColorValueRow::cornerRadius() const
{
    return kRowRadius;
}

void ColorValueRow::paintEvent(QPaintEvent *)
{
    const Theme::Palette &palette = appearance().palette();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = shape();
    painter.translate(box.center());
    painter.scale(pressScale(kPressedRow), pressScale(kPressedRow));
    painter.translate(-box.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(palette.tileTint, palette.hoverTint, hoverAmount()));
    painter.drawRoundedRect(box, kRowRadius, kRowRadius);

    constexpr int kFlags = Qt::AlignLeft | Qt::AlignVCenter;
    painter.setFont(Theme::font(FontRole::CaptionMedium));
    painter.setPen(palette.text3);
    painter.drawText(box.adjusted(kLabelLeft, 0, 0, 0), kFlags, colorFormLabel(m_form));
    painter.setFont(Theme::font(m_form == ColorForm::Hex ? FontRole::MonoLarge : FontRole::Mono));
    painter.setPen(palette.text1);
    painter.drawText(box.adjusted(kValueLeft, 0, 0, 0), kFlags, m_value);

    const QRectF mark(box.width() - kMarkRight - kMarkBox / 2, 0, kMarkBox, box.height());
    const double copied = std::clamp(m_copied.value(), 0.0, 1.0);
    paintGlyph(painter, u"square.on.square", mark, kMarkSize, GlyphWeight::Regular,
               faded(mixed(palette.text2, palette.text1, hoverAmount()), 1 - copied));
    paintGlyph(painter, u"checkmark", mark, kMarkSize, GlyphWeight::Medium, faded(palette.accent, copied));
}

} // namespace ostrelle
