#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// A row that is a button as a whole and takes something away.
class RowButton : public NotchButton
{
    Q_OBJECT
public:
    RowButton(const ControlContext &context, const QString &label, QWidget *parent);

protected:
    QRectF shape() const override;
    double cornerRadius() const override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ostrelle
