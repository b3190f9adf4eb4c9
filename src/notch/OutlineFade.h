#pragma once

#include <QGraphicsEffect>
#include <QPainterPath>

namespace ostrelle {

/// Shows a widget at less than full opacity, and only inside an outline. Enabled only while something moves.
class OutlineFade : public QGraphicsEffect
{
    Q_OBJECT
public:
    using QGraphicsEffect::QGraphicsEffect;

    /// `outline` is in the widget's coordinates. The widget is not repainted by this.
    void setLook(double opacity, const QPainterPath &outline);

protected:
    void draw(QPainter *painter) override;

private:
    double m_opacity = 1;
    QPainterPath m_outline;
};

} // namespace ostrelle
