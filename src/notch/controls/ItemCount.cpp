#include "notch/controls/ItemCount.h"

#include "notch/AccessibleRole.h"
#include "notch/NotchAppearance.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace ostrelle {
namespace {

/// Beyond the distance that the header keeps between its controls.
constexpr double kTrailingGap = 3;
constexpr int kHeight = 22;

/// The fonts in use do not offer their figures of one width to Qt, so each stands on the width of a zero.
double figureWidth(const QFont &font)
{
    return QFontMetricsF(font).horizontalAdvance(u'0');
}

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
    const double width = figureWidth(Theme::font(FontRole::Micro)) * static_cast<double>(m_figures.size());
    return {static_cast<int>(std::ceil(width + kTrailingGap)), kHeight};
}

void ItemCount::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setFont(Theme::font(FontRole::Micro));
    painter.setPen(m_context.appearance.palette().text3);
    const double figure = figureWidth(painter.font());
    double x = width() - kTrailingGap - figure * static_cast<double>(m_figures.size());
    for (const QChar character : m_figures) {
        painter.drawText(QRectF(x, 0, figure, height()), Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextDontClip,
                         QString(character));
        x += figure;
    }
}

} // namespace ostrelle
