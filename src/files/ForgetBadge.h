#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// The small round mark at the corner of a recent file that forgets it. It comes and goes with a fade.
class ForgetBadge : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kDiameter = 17;

    ForgetBadge(const ControlContext &context, QWidget *parent);

    void setShown(bool shown);

    QSize sizeHint() const override { return {kDiameter, kDiameter}; }

protected:
    bool isInteractive() const override { return isEnabled() && m_shown.target() > 0; }
    double cornerRadius() const override { return kDiameter / 2.0; }
    void paintEvent(QPaintEvent *event) override;

private:
    AnimatedNumber m_shown;
};

} // namespace ostrelle
