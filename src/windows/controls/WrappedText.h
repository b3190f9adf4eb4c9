#pragma once

#include <QFont>
#include <QPointF>
#include <QString>

#include <vector>

class QColor;
class QPainter;

namespace ostrelle {

/// A width in which any text stays on one line: what a widget whose height depends on its width asks for as long as it
/// has none.
inline constexpr int kUnbroken = 10000;

/// A text broken into lines of one height, as wide as there is room.
class WrappedText
{
public:
    /// Balanced: as narrow as the same number of lines allows, so that they are of like lengths.
    enum class Breaking { Full, Balanced };
    enum class Alignment { Leading, Centred };
    struct Style
    {
        QFont font;
        double lineHeight = 14;
        Breaking breaking = Breaking::Full;
        Alignment alignment = Alignment::Leading;
    };

    WrappedText() = default;
    WrappedText(const QString &text, const Style &style, double width);

    double height() const;
    qsizetype lineCount() const { return static_cast<qsizetype>(m_lines.size()); }
    /// From the top left corner of the room that it was broken for.
    void paint(QPainter &painter, const QPointF &topLeft, const QColor &color) const;

private:
    Style m_style;
    double m_width = 0;
    std::vector<QString> m_lines;
};

/// One line in a box, its baseline where that of a line of `lineHeight` is.
void paintLine(QPainter &painter, const QString &text, const QFont &font, double lineHeight, const QPointF &topLeft,
               const QColor &color);

} // namespace ostrelle
