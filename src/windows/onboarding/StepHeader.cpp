#include "windows/onboarding/StepHeader.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "windows/WindowColors.h"
#include "windows/controls/WrappedText.h"
#include "windows/onboarding/OnboardingMeasures.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr int kTop = 38;
constexpr int kTitleLine = 23;
constexpr int kGap = 4;
constexpr int kSubtitleLine = 18;

} // namespace

StepHeader::StepHeader(const ControlContext &context, const QString &title, const QStringList &subtitle, QWidget *page)
    : QWidget(page)
    , m_appearance(context.appearance)
    , m_subtitle(subtitle)
{
    setAccessibleRole(*this, QAccessible::Heading);
    setAccessibleName(title);
    setAccessibleDescription(subtitle.join(u' '));
    page->setAccessibleName(title);
    setGeometry(onboarding::kMargin, kTop, onboarding::kPage.width() - 2 * onboarding::kMargin,
                kTitleLine + kGap + kSubtitleLine * static_cast<int>(subtitle.size()));
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void StepHeader::paintEvent(QPaintEvent *)
{
    const WindowColors &colors = WindowColors::of(m_appearance);
    QPainter painter(this);
    paintLine(painter, accessibleName(), Theme::interfaceFont(18, QFont::DemiBold), kTitleLine, {0, 0}, colors.text1);
    double y = kTitleLine + kGap;
    for (const QString &line : m_subtitle) {
        paintLine(painter, line, Theme::interfaceFont(12.5, QFont::Normal), kSubtitleLine, {0, y}, colors.text2);
        y += kSubtitleLine;
    }
}

} // namespace ostrelle
