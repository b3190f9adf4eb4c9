#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// An on-off switch. Its help, name and description are set by who uses it.
class SwitchButton : public NotchButton
{
    Q_OBJECT
public:
    enum class Size { Ordinary, Small };

    SwitchButton(const ControlContext &context, Size size, QWidget *parent);

    /// Shows a state that was not the user's doing: nothing is emitted. It slides there while it is seen.
    void showState(bool isOn);

Q_SIGNALS:
    /// By pointer, key or assistive technology.
    void switched(bool isOn);

protected:
    double cornerRadius() const override { return height() / 2.0; }
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    AnimatedNumber m_position; ///< 0 off, 1 on
};

} // namespace ostrelle
