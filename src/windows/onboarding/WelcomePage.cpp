#include "windows/onboarding/WelcomePage.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/ColorMix.h"
#include "windows/ProgramMark.h"
#include "windows/WindowColors.h"
#include "windows/controls/DropShadow.h"
#include "windows/controls/WrappedText.h"
#include "windows/onboarding/OnboardingColors.h"
#include "windows/onboarding/OnboardingMeasures.h"
#include "windows/onboarding/SeamLine.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kMiddle = onboarding::kPage.width() / 2.0;
constexpr double kMarkSize = 116;
constexpr QRectF kMark(kMiddle - kMarkSize / 2, 104, kMarkSize, kMarkSize);
constexpr QSizeF kGlow(420, 340);
constexpr double kMarkCorner = 36;
constexpr double kMarkShadowOffset = 8;
constexpr double kMarkShadowDeviation = 10;
constexpr double kMarkShadow = 0.30;
constexpr QRectF kSeam(kMiddle - 118, 254, 236, 1.5);
constexpr double kSeamGlow = 6;
constexpr double kNameTop = 281.5;
constexpr double kNameLine = 38;
constexpr double kTaglineTop = 326;
constexpr double kTaglineLine = 20;
constexpr double kTourTop = 373;
constexpr double kTourLine = 18;

const QString kName = QStringLiteral("Ostrelle");
const QString kTagline = QStringLiteral("Six small tools, just above your work.");
const QString kTour = QStringLiteral("A quick tour — under a minute.");

void paintCentred(QPainter &painter, const QString &text, const QFont &font, double top, double lineHeight,
                  const QColor &color)
{
    const WrappedText line(text, {.font = font, .lineHeight = lineHeight, .alignment = WrappedText::Alignment::Centred},
                           onboarding::kPage.width());
    line.paint(painter, {0, top}, color);
}

} // namespace

WelcomePage::WelcomePage(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
{
    setAccessibleRole(*this, QAccessible::StaticText);
    setAccessibleName(kName);
    setAccessibleDescription(kTagline + u' ' + kTour);
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        m_mark = {};
        update();
    });
}

void WelcomePage::paintMark(QPainter &painter)
{
    const ColorScheme scheme = m_appearance.scheme();
    const QColor glow = m_appearance.glow();
    QRadialGradient halo(QPointF(0, 0), 1);
    for (const double part : {0.0, 0.15, 0.3, 0.45, 0.6, 0.75, 0.9, 1.0})
        halo.setColorAt(part, faded(glow, OnboardingColors::of(m_appearance).markGlow * (1 - part) * (1 - part)));
    painter.save();
    painter.translate(kMark.center());
    painter.scale(kGlow.width() / 2, kGlow.height() / 2);
    painter.fillRect(QRectF(-1, -1, 2, 2), halo);
    painter.restore();
    paintDropShadow(painter, kMark.translated(0, kMarkShadowOffset), kMarkCorner, kMarkShadowDeviation,
                    faded(Qt::black, kMarkShadow));

    if (m_mark.isNull() || m_mark.devicePixelRatio() != devicePixelRatioF())
        m_mark =
            ProgramMark{.size = kMarkSize, .sweep = themeStops(m_appearance.theme(), scheme), .glow = glow}.picture(
                devicePixelRatioF());
    painter.drawPixmap(kMark.topLeft(), m_mark);
}

void WelcomePage::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintMark(painter);
    paintSeamLine(painter, kSeam, m_appearance.theme(), m_appearance.scheme(), kSeamGlow);
    QFont name = Theme::interfaceFont(32, QFont::DemiBold);
    name.setLetterSpacing(QFont::AbsoluteSpacing, -0.4);
    paintCentred(painter, kName, name, kNameTop, kNameLine, colors.text1);
    paintCentred(painter, kTagline, Theme::interfaceFont(14, QFont::Normal), kTaglineTop, kTaglineLine,
                 faded(colors.text1, 0.9));
    paintCentred(painter, kTour, Theme::interfaceFont(12.5, QFont::Normal), kTourTop, kTourLine, colors.text2);
}

} // namespace ostrelle
