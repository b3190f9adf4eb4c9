#include "files/RecentWell.h"

#include "files/RoundedPicture.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kSymbolPart = 0.38;

} // namespace

void RecentWell::paint(QPainter &painter, const QRectF &square, double radius, const ControlContext &context) const
{
    const Theme::Palette &palette = context.appearance.palette();
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.tileTint);
    painter.drawRoundedRect(square, radius, radius);
    if (thumbnail.isNull())
        paintGlyph(painter, symbol, square, kSymbolPart * square.width(), GlyphWeight::Medium,
                   prominence == Prominence::Strong ? palette.text2 : palette.text3);
    else
        paintRounded(painter, square, radius, thumbnail);
}

} // namespace ostrelle
