#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>

namespace ostrelle {

/// The round glass: the screen's pixels around the hot spot, magnified to whole squares, in a ring of the colour at the
/// hot spot. Everything is in device pixels of the screen that shows it.
class LoupeLens
{
public:
    enum class Shadow { Soft, None }; ///< None where nothing can be seen through

    static constexpr int kLeastMagnification = 4;
    static constexpr int kUsualMagnification = 9;
    static constexpr int kGreatestMagnification = 16;

    LoupeLens(double scale, Shadow shadow);

    /// Of the picture; odd, since hotSpot() is its middle.
    QSize size() const { return m_backdrop.size(); }
    QPoint hotSpot() const { return {size().width() / 2, size().height() / 2}; }
    /// The part of the screen that paint() needs, for a square of `magnification` logical pixels.
    QRect sampledArea(const QPoint &hotSpot, int magnification) const;
    /// Fills the whole canvas, of size(), with the picture.
    void paint(QImage &canvas, const QImage &sampled, int magnification) const;

private:
    int cell(int magnification) const;
    QImage magnified(const QImage &sampled, int cell) const;
    void paintBackdrop(Shadow shadow);

    double m_scale;
    int m_radius;      ///< of the magnified part; its diameter is 2 · m_radius + 1
    QImage m_backdrop; ///< what never changes: shadow and outline
};

} // namespace ostrelle
