#include "windows/controls/WrappedText.h"

#include "notch/Theme.h"

#include <QColor>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QPaintDevice>
#include <QPainter>
#include <QTextLayout>

#include <cmath>

namespace ostrelle {
namespace {

/// Not in the interface's own font, and its stand-in in others is of any size.
constexpr QChar kPathMark = u'▸';
constexpr double kNarrowest = 1; ///< logical pixel to which lines are balanced

QList<QTextLayout::FormatRange> pathMarks(const QString &text, const QFont &font)
{
    QList<QTextLayout::FormatRange> ranges;
    for (qsizetype at = text.indexOf(kPathMark); at >= 0; at = text.indexOf(kPathMark, at + 1)) {
        QTextCharFormat format;
        format.setFont(Theme::monospacedFont(font.pixelSize()));
        ranges.append({static_cast<int>(at), 1, format});
    }
    return ranges;
}

std::vector<QString> brokenLines(const QString &text, const QFont &font, double width)
{
    std::vector<QString> lines;
    QTextLayout layout(text, font);
    layout.setFormats(pathMarks(text, font));
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines.push_back(text.mid(line.textStart(), line.textLength()).trimmed());
    }
    layout.endLayout();
    return lines;
}

/// The narrowest width that needs no more lines.
std::vector<QString> balancedLines(const QString &text, const QFont &font, double width)
{
    std::vector<QString> best = brokenLines(text, font, width);
    double tooNarrow = 0;
    double enough = width;
    while (enough - tooNarrow > kNarrowest) {
        const double middle = (tooNarrow + enough) / 2;
        std::vector<QString> lines = brokenLines(text, font, middle);
        if (lines.size() > best.size()) {
            tooNarrow = middle;
        } else {
            enough = middle;
            best = std::move(lines);
        }
    }
    return best;
}

double advanceOf(const QString &text, const QFont &font)
{
    double advance = 0;
    QTextLayout layout(text, font);
    layout.setFormats(pathMarks(text, font));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    if (line.isValid()) {
        line.setLineWidth(std::numeric_limits<int>::max() / 256.0);
        advance = line.naturalTextWidth();
    }
    layout.endLayout();
    return advance;
}

} // namespace

WrappedText::WrappedText(const QString &text, const Style &style, double width)
    : m_style(style)
    , m_width(width)
{
    if (!text.isEmpty())
        m_lines = style.breaking == Breaking::Balanced ? balancedLines(text, style.font, width)
                                                       : brokenLines(text, style.font, width);
}

double WrappedText::height() const
{
    return m_style.lineHeight * static_cast<double>(m_lines.size());
}

void WrappedText::paint(QPainter &painter, const QPointF &topLeft, const QColor &color) const
{
    double y = topLeft.y();
    for (const QString &line : m_lines) {
        const double indent =
            m_style.alignment == Alignment::Centred ? (m_width - advanceOf(line, m_style.font)) / 2 : 0;
        paintLine(painter, line, m_style.font, m_style.lineHeight, {topLeft.x() + indent, y}, color);
        y += m_style.lineHeight;
    }
}

void paintLine(QPainter &painter, const QString &text, const QFont &font, double lineHeight, const QPointF &topLeft,
               const QColor &color)
{
    const QFontMetricsF metrics(font);
    const double ratio = painter.device()->devicePixelRatioF();
    const double baseline =
        std::round((topLeft.y() + (lineHeight + metrics.ascent() - metrics.descent()) / 2) * ratio) / ratio;
    painter.setPen(color);
    double x = topLeft.x();
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        const bool isMark = text[begin] == kPathMark;
        end = begin + 1;
        while (end < text.size() && (text[end] == kPathMark) == isMark)
            ++end;
        const QString part = text.mid(begin, end - begin);
        const QFont &partFont = isMark ? Theme::monospacedFont(font.pixelSize()) : font;
        painter.setFont(partFont);
        painter.drawText(QPointF(x, baseline), part);
        x += QFontMetricsF(partFont).horizontalAdvance(part);
    }
}

} // namespace ostrelle
