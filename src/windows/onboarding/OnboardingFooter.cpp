#include "windows/onboarding/OnboardingFooter.h"

#include "foundation/MakeChild.h"
#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/ColorMix.h"
#include "notch/controls/SoftButton.h"
#include "windows/WindowColors.h"
#include "windows/controls/PushButton.h"
#include "windows/onboarding/OnboardingMeasures.h"

#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr int kBackPadding = 10;
constexpr double kDot = 6;
constexpr double kGap = 7;
constexpr double kCurrentGrowth = 12;
constexpr double kDotsWidth = onboarding::kSteps * kDot + kCurrentGrowth + (onboarding::kSteps - 1) * kGap;
constexpr PushButton::Measures kContinue{.height = 29, .padding = 16};

} // namespace

OnboardingFooter::OnboardingFooter(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_back(makeChild<SoftButton>(this, context,
                                   SoftButton::Content{.text = QStringLiteral("Back"),
                                                       .padding = {kBackPadding, 5, kBackPadding, 5},
                                                       .font = FontRole::Body}))
    , m_continue(
          makeChild<PushButton>(this, context, QStringLiteral("Continue"), PushButton::Kind::Prominent, kContinue))
    , m_dots(makeChild<QWidget>(this))
{
    setFixedSize(onboarding::kPage.width(), onboarding::kFooterHeight);
    // The word begins on the margin; its ground goes beyond.
    const QSize back = m_back.sizeHint();
    m_back.setGeometry(QRect(QPoint(onboarding::kMargin - kBackPadding, (height() - back.height()) / 2), back));
    m_dots.setGeometry(QRectF((width() - kDotsWidth) / 2, (height() - kDot) / 2, kDotsWidth, kDot).toAlignedRect());
    setAccessibleRole(m_dots, QAccessible::StaticText);
    connect(&m_back, &QAbstractButton::clicked, this, &OnboardingFooter::backPressed);
    connect(&m_continue, &QAbstractButton::clicked, this, &OnboardingFooter::continuePressed);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
    showSteps(0, 0, 1);
}

QWidget &OnboardingFooter::continueButton() const
{
    return m_continue;
}

void OnboardingFooter::showSteps(int from, int to, double progress)
{
    m_from = from;
    m_to = to;
    m_progress = progress;
    m_back.setVisible(to > 0);
    const QString name = QStringLiteral("Step %1 of %2").arg(to + 1).arg(onboarding::kSteps);
    if (m_dots.accessibleName() != name) // each frame comes by here, and every name that is set is told
        m_dots.setAccessibleName(name);
    const QString label = to == onboarding::kSteps - 1 ? QStringLiteral("Get Started") : QStringLiteral("Continue");
    if (m_continue.text() != label || m_continue.width() == 0) {
        m_continue.setText(label);
        m_continue.setAccessibleName(label);
    }
    const QSize size = m_continue.sizeHint();
    m_continue.setGeometry(
        QRect(QPoint(width() - onboarding::kMargin - size.width(), (height() - size.height()) / 2), size));
    update(m_dots.geometry());
}

/// How much a step is the current one.
double OnboardingFooter::shareOf(int step) const
{
    const double progress = std::clamp(m_progress, 0.0, 1.0);
    if (m_from == m_to)
        return step == m_to ? 1 : 0;
    return step == m_to ? progress : step == m_from ? 1 - progress : 0;
}

void OnboardingFooter::paintEvent(QPaintEvent *)
{
    const NotchAppearance &looks = m_context.appearance;
    const WindowColors &colors = WindowColors::of(looks);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    double x = (width() - kDotsWidth) / 2;
    for (int step = 0; step < onboarding::kSteps; ++step) {
        const double share = shareOf(step);
        const double grown = looks.reducesMotion() ? (step == m_to ? 1 : 0) : share;
        const QRectF dot(x, (height() - kDot) / 2, kDot + kCurrentGrowth * grown, kDot);
        painter.setBrush(faded(colors.switchOff, 1 - share));
        painter.drawRoundedRect(dot, kDot / 2, kDot / 2);
        if (share > 0) {
            QLinearGradient sweep(dot.topLeft(), dot.topRight());
            sweep.setStops(themeStops(looks.theme(), looks.scheme()));
            painter.setOpacity(share);
            painter.setBrush(sweep);
            painter.drawRoundedRect(dot, kDot / 2, kDot / 2);
            painter.setOpacity(1);
        }
        x += dot.width() + kGap;
    }
}

} // namespace ostrelle
