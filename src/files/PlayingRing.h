#pragma once

class QPainter;
class QRectF;

namespace ostrelle {

class NotchAppearance;

/// The ring around what is being played: the theme's colours from corner to corner.
struct PlayingRing
{
    double width = 1;
    double radius = 0;   ///< of the outside
    double presence = 1; ///< 0 to 1; a spring may carry it beyond

    /// Inside the edge of `rect`.
    void paint(QPainter &painter, const QRectF &rect, const NotchAppearance &appearance) const;
};

} // namespace ostrelle
