#pragma once

#include "notch/controls/NotchButton.h"

namespace ostrelle {

/// The round button on a sound's picture that plays or stops it. While it is not shown it keeps its place and lets the
/// pointer through.
class PlayBadge : public NotchButton
{
    Q_OBJECT
public:
    /// How a badge looks at a moment.
    struct Look
    {
        bool isPlaying = false;
        double presence = 1; ///< 0 hidden, 1 shown; a spring may carry it beyond
        double press = 0;    ///< 1 pressed
        double scale = 1;    ///< of all of it
    };

    PlayBadge(const ControlContext &context, int diameter, QWidget *parent);

    void setPlaying(bool playing);
    /// Whether it is to be seen; comes and goes with a fade, scaling from 0.7.
    void setShown(bool shown);

    QSize sizeHint() const override { return {m_diameter, m_diameter}; }

    /// What the button paints, for views that paint their badges themselves.
    static void paint(QPainter &painter, const QRectF &circle, const Look &look);
    /// Scale of a badge of this presence, where movement is wanted.
    static double scaleOf(double presence);

protected:
    bool isInteractive() const override { return isEnabled() && m_isShown; }
    double cornerRadius() const override { return m_diameter / 2.0; }
    void paintEvent(QPaintEvent *event) override;

private:
    void describe();

    int m_diameter;
    bool m_isPlaying = false;
    bool m_isShown = false;
    AnimatedNumber m_shown;
};

} // namespace ostrelle
