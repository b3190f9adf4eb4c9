#include "notch/controls/DropOverlay.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kInset = 8;
constexpr double kRadius = 14;
constexpr double kBorder = 1.5;
constexpr double kFillOpacity = 0.06;
constexpr double kTargetResponse = 0.22;

} // namespace

DropOverlay::DropOverlay(const ControlContext &context, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_presence(context, 0, [this] {
        if (m_presence.target() == 0 && !m_presence.isMoving())
            hide();
        update();
    })
{
    setAttribute(Qt::WA_NoSystemBackground);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void DropOverlay::setTargeted(bool targeted)
{
    if (targeted) {
        show();
        raise();
    }
    m_presence.animateTo(targeted ? 1 : 0, Motion::damped(kTargetResponse));
}

void DropOverlay::paintEvent(QPaintEvent *)
{
    const double presence = m_presence.value();
    const double inset = kInset + kBorder / 2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(faded(m_context.appearance.palette().accentEdge, presence), kBorder));
    painter.setBrush(faded(Theme::kAccentVivid, kFillOpacity * presence));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

} // namespace ostrelle
