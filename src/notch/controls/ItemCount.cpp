#include "notch/controls/ItemCount.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/TabularText.h"

#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

/// Beyond the distance that the header keeps between its controls.
constexpr double kTrailingGap = 3;
constexpr int kHeight = 22;

} // namespace

ItemCount::ItemCount(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleRole(*this, QAccessible::StaticText);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void ItemCount::setCount(int count)
{
    m_figures = QString::number(count);
    setAccessibleName(count == 1 ? QStringLiteral("1 item") : m_figures + QStringLiteral(" items"));
    updateGeometry();
    update();
}

QSize ItemCount::sizeHint() const
{
    const double width = tabularAdvance(Theme::font(FontRole::Micro), m_figures);
    return {static_cast<int>(std::ceil(width + kTrailingGap)), kHeight};
}

void ItemCount::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(Theme::font(FontRole::Micro));
    painter.setPen(m_context.appearance.palette().text3);
    const double x = width() - kTrailingGap - tabularAdvance(painter.font(), m_figures);
    drawTabular(painter, QRectF(x, 0, width() - x, height()), m_figures);
}

} // namespace ostrelle
