#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// A small round mark that takes away what stands beside it.
class RemoveButton : public NotchButton
{
    Q_OBJECT
public:
    RemoveButton(const ControlContext &context, const QString &help, QWidget *parent);

protected:
    double cornerRadius() const override { return width() / 2.0; }
    void paintEvent(QPaintEvent *event) override;
};

} // namespace ostrelle
