#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// The one thing to do: a white label on the accent gradient, with a glow around it.
class FilledButton : public NotchButton
{
    Q_OBJECT
public:
    FilledButton(const ControlContext &context, const QString &label, QWidget *parent);

    QSize sizeHint() const override;

protected:
    double cornerRadius() const override;
    bool isGlowing() const override { return isEnabled() && isVisible(); }
    void paintGlow(QPainter &painter) const override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ostrelle
