#pragma once

#include "notch/controls/NotchButton.h"
#include "notch/controls/Shake.h"

#include <optional>

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
        double presence = 1;                 ///< 0 hidden, 1 shown; a spring may carry it beyond
        double press = 0;                    ///< 1 pressed
        double scale = 1;                    ///< of all of it
        std::optional<double> progress = {}; ///< 0 to 1: how much of the sound was heard
    };

    PlayBadge(const ControlContext &context, int diameter, QWidget *parent);

    void setPlaying(bool playing);
    /// Whether it is to be seen; comes and goes with a fade, scaling from 0.7.
    void setShown(bool shown);
    /// How much of the sound was heard, 0 to 1, shown as a ring; nothing shows none.
    void setProgress(std::optional<double> progress);
    /// The sound cannot be played.
    void shake();

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
    void showShake();

    int m_diameter;
    bool m_isPlaying = false;
    bool m_isShown = false;
    std::optional<double> m_progress;
    AnimatedNumber m_shown;
    Shake m_shake;
    int m_shaken = 0; ///< how far it is from its place
};

} // namespace ostrelle
