#pragma once

#include <QCache>
#include <QGlyphRun>
#include <QList>
#include <QSizeF>
#include <QString>

class QPainter;
class QRectF;

namespace ostrelle {

/// The names under the tiles, cut in the middle where they are too long. Kept shaped: shaping costs more than all the
/// rest of a tile's painting. In the font FontRole::Micro. Main thread.
class TileNames
{
public:
    TileNames();

    /// In the middle of the line, in the painter's pen.
    void paint(QPainter &painter, const QRectF &line, const QString &name);

private:
    struct Shaped
    {
        QList<QGlyphRun> glyphs; ///< from the top left corner
        QSizeF size;
        double ascent = 0;
    };

    static Shaped shaped(const QString &name, double width);

    QCache<QString, Shaped> m_names;
    double m_width = 0; ///< that they are cut to
};

} // namespace ostrelle
