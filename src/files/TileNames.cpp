#include "files/TileNames.h"

#include "notch/Theme.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <cmath>
#include <memory>
#include <utility>

namespace ostrelle {
namespace {

/// More than are in sight at once.
constexpr int kKept = 200;

} // namespace

TileNames::TileNames()
    : m_names(kKept)
{
}

void TileNames::paint(QPainter &painter, const QRectF &line, const QString &name)
{
    if (std::exchange(m_width, line.width()) != line.width())
        m_names.clear();
    const Shaped *known = m_names.object(name);
    if (known == nullptr) {
        auto fresh = std::make_unique<Shaped>(shaped(name, line.width()));
        known = fresh.get();
        m_names.insert(name, fresh.release());
    }
    QPointF corner = line.center() - QPointF(known->size.width(), known->size.height()) / 2;
    // The baseline on a whole unit, as that of all other text.
    corner.setY(std::round(corner.y() + known->ascent) - known->ascent);
    for (const QGlyphRun &run : known->glyphs)
        painter.drawGlyphRun(corner, run);
}

TileNames::Shaped TileNames::shaped(const QString &name, double width)
{
    const QFont font = Theme::font(FontRole::Micro);
    QTextLayout layout(QFontMetricsF(font).elidedText(name, Qt::ElideMiddle, width), font);
    // The ending stays at the end, in whatever script the name begins.
    QTextOption option;
    option.setTextDirection(Qt::LeftToRight);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    return {layout.glyphRuns(), {line.naturalTextWidth(), line.height()}, line.ascent()};
}

} // namespace ostrelle
