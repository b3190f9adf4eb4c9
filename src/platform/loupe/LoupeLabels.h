#pragma once

#include "platform/loupe/LoupeLens.h"

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>

namespace ostrelle {

/// What stands beside the lens: the colour's text, and the keys. Everything is in device pixels.
class LoupeLabels
{
public:
    struct Content
    {
        QString text; ///< the colour as HEX
        QRgb swatch = 0;
        int gathered = 0; ///< colours picked so far, while the loupe stays
        friend bool operator==(const Content &, const Content &) = default;
    };

    LoupeLabels(double scale, LoupeLens::Shadow shadow);

    QSize size() const { return m_backdrop.size(); }
    /// Where the picture's top left corner goes on the screen: below the lens, above it near the lower edge, and never
    /// beyond the screen's sides.
    QPoint position(const QPoint &hotSpot, const QRect &screen) const;
    /// Fills the whole canvas, of size(), with the picture.
    void paint(QImage &canvas, const Content &content) const;

private:
    void paintBackdrop(LoupeLens::Shadow shadow);

    double m_scale;
    double m_margin;   ///< for the shadow, logical
    double m_width;    ///< of the wider capsule, logical
    QImage m_backdrop; ///< what never changes: capsules and keys
};

} // namespace ostrelle
