#include "windows/onboarding/PageCard.h"

#include "notch/NotchAppearance.h"
#include "windows/WindowColors.h"
#include "windows/onboarding/OnboardingColors.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kEdge = 0.75;

} // namespace

PageCard::PageCard(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
{
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void PageCard::paintGround(QPainter &painter) const
{
    const OnboardingColors &colors = OnboardingColors::of(m_context.appearance);
    const QRectF box(rect());
    QPainterPath card;
    card.addRoundedRect(box, kRadius, kRadius);
    painter.fillPath(card, colors.card);
    painter.fillPath(card.subtracted(card.translated(0, kEdge)), colors.cardTopEdge);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.cardOutline, kEdge));
    const double inset = kEdge / 2;
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), kRadius - inset, kRadius - inset);
}

void PageCard::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter);
}

void paintRowLine(QPainter &painter, const QWidget &row, const NotchAppearance &appearance, double x)
{
    const double thickness = std::max(kEdge, 1 / row.devicePixelRatioF());
    painter.fillRect(QRectF(x, 0, row.width() - x, thickness), WindowColors::of(appearance).hairline);
}

} // namespace ostrelle
