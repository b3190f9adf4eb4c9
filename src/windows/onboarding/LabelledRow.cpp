#include "windows/onboarding/LabelledRow.h"

#include "notch/NotchAppearance.h"
#include "windows/WindowColors.h"
#include "windows/controls/CardGround.h"
#include "windows/controls/WrappedText.h"

#include <QPainter>

namespace ostrelle {

LabelledRow::LabelledRow(const ControlContext &context, const QString &label, QWidget *end, QWidget *parent)
    : QWidget(parent)
    , m_appearance(context.appearance)
    , m_label(label)
    , m_end(end)
{
    if (m_end != nullptr)
        m_end->setParent(this);
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void LabelledRow::setDivided(bool isDivided)
{
    m_isDivided = isDivided;
    update();
}

void LabelledRow::resizeEvent(QResizeEvent *)
{
    if (m_end != nullptr)
        m_end->move(width() - kPadding - m_end->width(), (height() - m_end->height()) / 2);
}

void LabelledRow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    if (m_isDivided)
        paintRowLine(painter, *this, m_appearance, kPadding);
    paintLine(painter, m_label, Theme::font(FontRole::Body), height(), {kPadding, 0},
              WindowColors::of(m_appearance).text1);
}

} // namespace ostrelle
