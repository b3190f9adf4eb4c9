#include "notch/CrossFade.h"

#include "notch/AccessibleRole.h"

#include <QPainter>

namespace ostrelle {

CrossFade::CrossFade(const ControlContext &context, QWidget *panel)
    : QWidget(panel)
    , m_panel(*panel)
    , m_progress(context, 1, [this] { step(); })
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setAccessibleRole(*this, QAccessible::Animation);
    hide();
}

QPixmap CrossFade::pictureOfPanel()
{
    m_isLookingBelow = true;
    QPixmap picture = m_panel.grab();
    m_isLookingBelow = false;
    return picture;
}

void CrossFade::begin()
{
    // A change in the middle of a fade goes on from what is seen.
    m_before = m_panel.grab();
    m_after = {};
    m_progress.jumpTo(0);
    m_progress.fadeTo(1, AnimatedNumber::kReducedFade);
    setGeometry(m_panel.rect());
    show();
    raise();
}

void CrossFade::step()
{
    if (!m_progress.isMoving()) {
        hide();
        m_before = {};
        m_after = {};
        return;
    }
    setGeometry(m_panel.rect());
    raise();
    m_after = pictureOfPanel();
    update();
}

void CrossFade::paintEvent(QPaintEvent *)
{
    if (m_isLookingBelow || m_before.isNull())
        return;
    const auto topCentred = [this](const QPixmap &picture) {
        return QPointF((width() - picture.deviceIndependentSize().width()) / 2, 0);
    };
    QPixmap mix((QSizeF(size()) * devicePixelRatioF()).toSize());
    mix.setDevicePixelRatio(devicePixelRatioF());
    mix.fill(Qt::transparent);
    QPainter onMix(&mix);
    onMix.setCompositionMode(QPainter::CompositionMode_Plus);
    onMix.setOpacity(1 - m_progress.value());
    onMix.drawPixmap(topCentred(m_before), m_before);
    onMix.setOpacity(m_progress.value());
    onMix.drawPixmap(topCentred(m_after), m_after);
    onMix.end();
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawPixmap(0, 0, mix);
}

} // namespace ostrelle
