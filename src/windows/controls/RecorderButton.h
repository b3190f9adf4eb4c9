#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// The part of a shortcut recorder that shows the keys and is pressed to record others.
class RecorderButton : public NotchButton
{
    Q_OBJECT
public:
    enum class State { NotSet, Set, Recording };

    RecorderButton(const ControlContext &context, QWidget *parent);

    void setState(const QString &label, State state);
    QSize sizeHint() const override;

protected:
    double cornerRadius() const override;
    bool isGlowing() const override { return m_state == State::Recording; }
    void paintGlow(QPainter &painter) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    State m_state = State::NotSet;
};

} // namespace ostrelle
