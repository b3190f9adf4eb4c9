#pragma once

#include "notch/controls/ControlContext.h"

#include <QImage>
#include <QRectF>
#include <QString>

class QPainter;

namespace ostrelle {

/// The small square beside a file: its picture, or a symbol for its kind.
struct RecentWell
{
    /// Of the symbol.
    enum class Prominence { Quiet, Strong };

    QString symbol;
    QImage thumbnail; ///< null: the symbol instead
    Prominence prominence = Prominence::Quiet;

    /// `square` as wide as high, logical pixels.
    void paint(QPainter &painter, const QRectF &square, double radius, const ControlContext &context) const;
};

} // namespace ostrelle
