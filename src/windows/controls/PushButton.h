#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// A button of the windows with a word on it.
class PushButton : public NotchButton
{
    Q_OBJECT
public:
    enum class Kind {
        Plain,
        Prominent,  ///< in the accent's sweep, with a glow
        Destructive ///< takes something away for good
    };
    struct Measures
    {
        double height = 26;
        double padding = 13; ///< at both ends
    };

    PushButton(const ControlContext &context, const QString &label, Kind kind, const Measures &measures,
               QWidget *parent);

    QSize sizeHint() const override;

protected:
    double cornerRadius() const override;
    bool isGlowing() const override { return m_kind == Kind::Prominent && isEnabled() && isVisible(); }
    int auraReach() const override;
    void paintGlow(QPainter &painter) const override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QBrush fill() const;

    Kind m_kind;
    Measures m_measures;
};

} // namespace ostrelle
