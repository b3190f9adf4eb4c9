#include "windows/ThemeSwatch.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/AngledGradient.h"
#include "notch/controls/ColorMix.h"
#include "windows/ThemeMiniature.h"
#include "windows/WindowColors.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ostrelle {
namespace {

constexpr double kRadius = 13;
constexpr double kMiniatureRadius = 9;
constexpr double kTitleGap = 8;
constexpr double kTitleLine = 16;
constexpr double kDescriptionLine = 14;
constexpr int kDescriptionLines = 2;
constexpr double kPressedScale = 0.97;
constexpr double kRingWidth = 2;
constexpr double kRingGap = 1.5;
constexpr double kRingDegrees = 135;

} // namespace

int ThemeSwatch::Measures::height() const
{
    return static_cast<int>(
        std::ceil(2 * padding + miniature.height() + kTitleGap + kTitleLine + kDescriptionLines * kDescriptionLine));
}

ThemeSwatch::ThemeSwatch(const ControlContext &context, NotchTheme theme, const Measures &measures, QWidget *parent)
    : NotchButton(context, parent)
    , m_theme(theme)
    , m_measures(measures)
{
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::TabFocus);
    setAccessibleRole(*this, QAccessible::RadioButton);
    setAccessibleName(title(theme));
    setAccessibleDescription(blurb(theme));
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        m_picture = {};
        update();
    });
}

QSize ThemeSwatch::sizeHint() const
{
    return {static_cast<int>(std::ceil(m_measures.miniature.width() + 2 * m_measures.padding)), m_measures.height()};
}

double ThemeSwatch::cornerRadius() const
{
    return kRadius;
}

void ThemeSwatch::paintMiniature(QPainter &painter, const QRectF &box)
{
    const NotchAppearance &looks = appearance();
    if (m_picture.isNull() || m_picture.devicePixelRatio() != devicePixelRatioF())
        m_picture = themeMiniature(m_measures.miniature, kMiniatureRadius, devicePixelRatioF(), m_theme, looks.scheme(),
                                   looks.contrast());
    painter.save();
    painter.translate(box.center());
    painter.scale(pressScale(kPressedScale), pressScale(kPressedScale));
    painter.translate(-box.center());
    painter.drawPixmap(box.topLeft(), m_picture);
    painter.restore();
    if (!isChecked())
        return;
    const double reach = kRingGap + kRingWidth / 2;
    const QRectF ring = box.adjusted(-reach, -reach, reach, reach);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(angledGradient(ring, kRingDegrees, themeStops(m_theme, looks.scheme())), kRingWidth));
    painter.drawRoundedRect(ring, kMiniatureRadius + reach, kMiniatureRadius + reach);
}

void ThemeSwatch::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(appearance());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double press = std::clamp(pressAmount(), 0.0, 1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(faded(colors.hover, std::clamp(hoverAmount(), 0.0, 1.0)), colors.chosen, press));
    painter.drawRoundedRect(shape(), kRadius, kRadius);

    const double x = m_measures.padding;
    paintMiniature(painter, QRectF(QPointF(x, m_measures.padding), m_measures.miniature));
    double y = m_measures.padding + m_measures.miniature.height() + kTitleGap;
    paintLine(painter, title(m_theme), Theme::interfaceFont(12, isChecked() ? QFont::DemiBold : QFont::Medium),
              kTitleLine, {x, y}, colors.text1);
    y += kTitleLine;
    const WrappedText description(blurb(m_theme),
                                  {.font = Theme::interfaceFont(10.5, QFont::Normal),
                                   .lineHeight = kDescriptionLine,
                                   .breaking = WrappedText::Breaking::Balanced},
                                  width() - 2 * x);
    description.paint(painter, {x, y}, colors.text2);
}

} // namespace ostrelle
