#pragma once

#include "inspectors/ColorForm.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// One text form of a colour: pressing it copies the form, after which it shows a check mark for a while.
class ColorValueRow : public NotchButton
{
    Q_OBJECT
public:
    static constexpr int kHeight = 46;

    ColorValueRow(const ControlContext &context, ColorForm form, QWidget *parent);

    ColorForm form() const { return m_form; }
    const QString &value() const { return m_value; }
    void setValue(const QString &value);
    /// The value was just copied.
    void setCopied(bool copied);

protected:
    double cornerRadius() const override;
    void paintEvent(QPaintEvent *event) override;

private:
    ColorForm m_form;
    QString m_value;
    AnimatedNumber m_copied; ///< 0 to 1
};

} // namespace ostrelle
