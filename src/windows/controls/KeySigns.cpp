#include "windows/controls/KeySigns.h"

#include "notch/controls/TabularText.h"

#include <QFont>
#include <QPainter>

namespace ostrelle {
namespace {

/// The interface's font draws this sign high.
constexpr QChar kControlSign = u'⌃';
constexpr double kControlDrop = 0.2; ///< in font sizes

} // namespace

void paintKeySigns(QPainter &painter, const QRectF &rect, const QString &signs)
{
    double x = rect.x();
    for (const QChar sign : signs) {
        const double advance = tabularAdvance(painter.font(), QString(sign));
        const double drop = sign == kControlSign ? kControlDrop * painter.font().pixelSize() : 0;
        drawTabular(painter, QRectF(x, rect.y() + drop, advance, rect.height()), QString(sign));
        x += advance;
    }
}

} // namespace ostrelle
