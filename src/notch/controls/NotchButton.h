#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QAbstractButton>
#include <QPointer>
#include <QRectF>

namespace ostrelle {

class ControlAura;

/// What the buttons of the notch have in common: hover and press on the hover spring, Return beside Space, and a focus
/// ring that follows their shape once a key moved the focus.
class NotchButton : public QAbstractButton
{
    Q_OBJECT
public:
    NotchButton(const ControlContext &context, QWidget *parent);
    ~NotchButton() override;

    /// Tooltip and accessible name in one.
    void setHelp(const QString &help);
    /// Fades the whole button, 0 to 1.
    void setPresence(double presence);

protected:
    const NotchAppearance &appearance() const { return m_context.appearance; }
    /// 0 at rest, 1 under the pointer; moves.
    double hoverAmount() const { return m_hover.value(); }
    /// 0 at rest, 1 pressed; moves.
    double pressAmount() const { return m_press.value(); }
    /// 1 at rest, `pressed` when pressed; stays 1 where the desktop wants no movement.
    double pressScale(double pressed) const;

    double presence() const { return m_presence; }
    /// Whether the pointer has an effect at the moment; refreshHover() when the answer changed.
    virtual bool isInteractive() const { return isEnabled(); }
    void refreshHover();
    /// For one that moves below a pointer that rests: nobody tells it.
    void setHovered(bool hovered);

    /// What the ring follows, in the button's coordinates.
    virtual QRectF shape() const { return QRectF(rect()); }
    virtual double cornerRadius() const = 0;
    /// Whether paintGlow() has something to paint around shape() at the moment; updateAura() when the answer changed.
    virtual bool isGlowing() const { return false; }
    virtual void paintGlow(QPainter &painter) const;
    /// How far ring and glow go beyond the button, logical pixels; always the same.
    virtual int auraReach() const { return 11; }
    void updateAura();

    bool event(QEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void becomeOnlyStop();
    void paintAura(QPainter &painter) const;
    QRectF ringRect() const;

    ControlContext m_context;
    AnimatedNumber m_hover;
    AnimatedNumber m_press;
    double m_presence = 1;
    bool m_showsRing = false;
    /// A child of the parent, and there only while it shows something.
    QPointer<ControlAura> m_aura;
};

} // namespace ostrelle
