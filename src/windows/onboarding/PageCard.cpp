#include "windows/onboarding/PageCard.h"

#include "notch/NotchAppearance.h"
#include "windows/controls/CardGround.h"
#include "windows/onboarding/OnboardingColors.h"

#include <QPainter>

namespace ostrelle {

PageCard::PageCard(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
{
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void PageCard::paintGround(QPainter &painter) const
{
    const OnboardingColors &colors = OnboardingColors::of(m_context.appearance);
    paintCard(painter, QRectF(rect()), kRadius,
              {.fill = colors.card, .topEdge = colors.cardTopEdge, .outline = colors.cardOutline});
}

void PageCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
}

} // namespace ostrelle
