#include "notch/controls/NotchButton.h"

#include "foundation/MakeChild.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ControlAura.h"
#include "records/Motion.h"

#include <QAbstractScrollArea>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kRingWidth = 2;
constexpr double kRingGap = 2;
constexpr double kRingReach = kRingGap + kRingWidth / 2;

/// The nearest widget around a control that shows all of `place`, which is in the control's coordinates. What scrolls
/// shows nothing beyond itself, and what fades does so with all that belongs to it.
QWidget &groundFor(const QWidget &control, const QRectF &place)
{
    QWidget *ground = control.parentWidget();
    const auto isEnough = [&] {
        const QPointF origin = control.mapTo(ground, QPointF());
        return QRectF(ground->rect()).contains(place.translated(origin)) || ground->isWindow() ||
               ground->graphicsEffect() != nullptr || qobject_cast<QAbstractScrollArea *>(ground->parentWidget());
    };
    while (!isEnough())
        ground = ground->parentWidget();
    return *ground;
}

bool cameFromKey(Qt::FocusReason reason)
{
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace

NotchButton::NotchButton(const ControlContext &context, QWidget *parent)
    : QAbstractButton(parent)
    , m_context(context)
    , m_hover(context, 0,
              [this] {
                  updateAura();
                  update();
              })
    , m_press(context, 0, [this] { update(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    connect(this, &QAbstractButton::pressed, this, [this] { m_press.animateTo(1, Motion::hover()); });
    connect(this, &QAbstractButton::released, this, [this] { m_press.animateTo(0, Motion::hover()); });
    connect(this, &QAbstractButton::toggled, this, [this](bool isChecked) {
        if (isChecked && autoExclusive())
            becomeOnlyStop();
    });
}

NotchButton::~NotchButton()
{
    delete m_aura;
}

void NotchButton::setHelp(const QString &help)
{
    setToolTip(help);
    setAccessibleName(help);
}

void NotchButton::setPresence(double presence)
{
    if (presence == m_presence)
        return;
    m_presence = presence;
    update();
}

void NotchButton::refreshHover()
{
    setHovered(isInteractive() && underMouse());
}

double NotchButton::pressScale(double pressed) const
{
    return appearance().reducesMotion() ? 1 : 1 + (pressed - 1) * pressAmount();
}

void NotchButton::paintGlow(QPainter &) const
{
}

bool NotchButton::event(QEvent *event)
{
    switch (event->type()) {
    case QEvent::Enter:
        setHovered(isInteractive());
        break;
    case QEvent::Leave:
    case QEvent::Hide:
        setHovered(false);
        break;
    case QEvent::EnabledChange:
        refreshHover();
        updateAura();
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

/// Of those that exclude each other Tab reaches the chosen one, from both sides. The toolkit sees to that only once one
/// of them has had the focus.
void NotchButton::becomeOnlyStop()
{
    for (auto *other : parentWidget()->findChildren<NotchButton *>(QString(), Qt::FindDirectChildrenOnly)) {
        if (other->autoExclusive())
            other->setFocusPolicy(other == this ? Qt::TabFocus : Qt::NoFocus);
    }
}

void NotchButton::setHovered(bool hovered)
{
    m_hover.animateTo(hovered ? 1 : 0, Motion::hover());
}

void NotchButton::focusInEvent(QFocusEvent *event)
{
    m_showsRing = cameFromKey(event->reason()) || (m_showsRing && event->reason() == Qt::ActiveWindowFocusReason);
    QAbstractButton::focusInEvent(event);
    updateAura();
}

void NotchButton::focusOutEvent(QFocusEvent *event)
{
    const bool comesBack = event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
    m_showsRing = m_showsRing && comesBack;
    QAbstractButton::focusOutEvent(event);
    updateAura();
}

void NotchButton::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QAbstractButton::keyPressEvent(event);
    else if (!event->isAutoRepeat()) // a key that is held must not answer what its own press has asked
        click();
}

void NotchButton::updateAura()
{
    const bool ring = m_showsRing && hasFocus();
    if (!ring && !isGlowing()) {
        if (m_aura)
            m_aura->end();
        m_aura.clear();
        return;
    }
    if (!m_aura && parentWidget() != nullptr) {
        const auto paint = [this](QPainter &painter) { paintAura(painter); };
        m_aura = &makeChild<ControlAura>(
            &groundFor(*this, ringRect().adjusted(-kRingWidth / 2, -kRingWidth / 2, kRingWidth / 2, kRingWidth / 2)),
            *this, auraReach(), paint);
    }
    if (m_aura)
        m_aura->update();
}

/// Along the middle of its line.
QRectF NotchButton::ringRect() const
{
    return shape().adjusted(-kRingReach, -kRingReach, kRingReach, kRingReach);
}

void NotchButton::paintAura(QPainter &painter) const
{
    if (isGlowing())
        paintGlow(painter);
    if (!m_showsRing || !hasFocus())
        return;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(appearance().palette().focusRing, kRingWidth));
    painter.drawRoundedRect(ringRect(), cornerRadius() + kRingReach, cornerRadius() + kRingReach);
}

} // namespace ostrelle
