#include "notch/controls/TabularText.h"

#include <QFontMetricsF>
#include <QPainter>

namespace ostrelle {
namespace {

bool isFigure(QChar character)
{
    return character >= u'0' && character <= u'9';
}

/// Calls `take` for each figure, and for each run of other characters, with its advance.
template <typename Take>
void forEachPart(const QFont &font, const QString &text, Take take)
{
    const QFontMetricsF metrics(font);
    for (qsizetype begin = 0, end = 0; begin < text.size(); begin = end) {
        end = begin + 1;
        if (!isFigure(text[begin])) {
            while (end < text.size() && !isFigure(text[end]))
                ++end;
        }
        const QString part = text.mid(begin, end - begin);
        take(part, isFigure(text[begin]) ? metrics.horizontalAdvance(u'0') : metrics.horizontalAdvance(part));
    }
}

} // namespace

double tabularAdvance(const QFont &font, const QString &text)
{
    double advance = 0;
    forEachPart(font, text, [&](const QString &, double part) { advance += part; });
    return advance;
}

void drawTabular(QPainter &painter, const QRectF &rect, const QString &text)
{
    double x = rect.x();
    forEachPart(painter.font(), text, [&](const QString &part, double advance) {
        painter.drawText(QRectF(x, rect.y(), advance, rect.height()),
                         Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextDontClip, part);
        x += advance;
    });
}

} // namespace ostrelle
