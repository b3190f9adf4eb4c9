#pragma once

#include <QRectF>

namespace ostrelle {

/// The measures of a row in the lists of the notch: a plate with two lines of text, and round buttons at its trailing
/// end. Logical pixels.
struct RowPlate
{
    static constexpr int kHeight = 42;
    /// From one row to the next.
    static constexpr int kPitch = 44;
    static constexpr int kSideMargin = 8;
    static constexpr int kPadding = 9;
    static constexpr double kRadius = 11;
    static constexpr int kButtonSpacing = 2;
    static constexpr double kLinesTop = 6;
    static constexpr double kTitleHeight = 16;
    static constexpr double kSecondHeight = 13;

    // Absolute, so that text written from right to left starts at the same edge and is cut at its own end.
    static constexpr int kLineFlags = Qt::AlignLeft | Qt::AlignAbsolute | Qt::AlignVCenter | Qt::TextSingleLine;

    /// Where the plate is in a row, which is one pitch high and as wide as the list.
    static QRectF plate(const QRectF &row);
    /// Places of the buttons, counted from the trailing one.
    static QRectF buttonRect(const QRectF &plate, int fromTrailing);
};

} // namespace ostrelle
