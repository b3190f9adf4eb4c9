#include "notch/DropZone.h"

#include "notch/AccessibleRole.h"
#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

#include <utility>

namespace ostrelle {
namespace {

constexpr int kGrowthMargin = 4;
constexpr double kHoveredScale = 1.03;

constexpr double kRadius = 14;
constexpr double kRestingTint = 0.6;
constexpr double kHoveredFill = 0.1;
constexpr double kBorder = 1;
constexpr double kDash = 4;
constexpr double kHoveredBorder = 1.5;
constexpr double kHoveredEdge = 0.7;

constexpr double kZoneSymbolSize = 17;
constexpr double kZoneSymbolBox = 20;
constexpr double kTitleHeight = 14;
constexpr double kActionHeight = 13;
constexpr double kSpacing = 5;
constexpr double kContentHeight = kZoneSymbolBox + kSpacing + kTitleHeight + kSpacing + kActionHeight;

} // namespace

DropZone::DropZone(const ControlContext &context, KestroModule module, const QString &action, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_module(module)
    , m_action(action)
    , m_hover(context, 0, [this] { update(); })
{
    setAttribute(Qt::WA_NoSystemBackground);
    resize(kWidth + 2 * kGrowthMargin, kHeight + 2 * kGrowthMargin);
    setAccessibleName(title(module));
    setAccessibleDescription(action);
    setAccessibleRole(*this, QAccessible::ListItem);
}

QRect DropZone::frame() const
{
    return {pos() + QPoint(kGrowthMargin, kGrowthMargin), QSize(kWidth, kHeight)};
}

void DropZone::setFrameCorner(const QPoint &corner)
{
    move(corner - QPoint(kGrowthMargin, kGrowthMargin));
}

void DropZone::setHovered(bool hovered)
{
    m_hover.animateTo(hovered ? 1 : 0, Motion::hover());
}

void DropZone::setOnDark(bool onDark)
{
    if (std::exchange(m_isOnDark, onDark) != onDark)
        update();
}

const Theme::Palette &DropZone::palette() const
{
    const NotchAppearance &appearance = m_context.appearance;
    return m_isOnDark ? Theme::palette(ColorScheme::Dark, appearance.contrast()) : appearance.palette();
}

void DropZone::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF zone(kGrowthMargin, kGrowthMargin, kWidth, kHeight);
    if (!m_context.appearance.reducesMotion()) {
        const double scale = 1 + (kHoveredScale - 1) * m_hover.value();
        painter.translate(zone.center());
        painter.scale(scale, scale);
        painter.translate(-zone.center());
    }
    paintGround(painter, zone);
    paintContent(painter, zone);
}

/// Both borders lie inside the zone.
void DropZone::paintGround(QPainter &painter, const QRectF &zone) const
{
    const Theme::Palette &colors = palette();
    const double hover = m_hover.value();
    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(faded(colors.tileTint, kRestingTint), faded(colors.accent, kHoveredFill), hover));
    painter.drawRoundedRect(zone, kRadius, kRadius);

    painter.setBrush(Qt::NoBrush);
    const auto drawBorder = [&painter, &zone](const QPen &pen) {
        const double inset = pen.widthF() / 2;
        painter.setPen(pen);
        painter.drawRoundedRect(zone.adjusted(inset, inset, -inset, -inset), kRadius - inset, kRadius - inset);
    };
    if (hover < 1) {
        QPen dashed(faded(colors.wellEdge, 1 - hover), kBorder, Qt::CustomDashLine, Qt::FlatCap);
        dashed.setDashPattern({kDash / kBorder, kDash / kBorder});
        drawBorder(dashed);
    }
    if (hover > 0)
        drawBorder(QPen(faded(colors.accent, kHoveredEdge * hover), kHoveredBorder));
}

void DropZone::paintContent(QPainter &painter, const QRectF &zone) const
{
    const Theme::Palette &colors = palette();
    const double hover = m_hover.value();
    const double top = zone.y() + (zone.height() - kContentHeight) / 2;
    const QRectF symbolBox(zone.center().x() - kZoneSymbolBox / 2, top, kZoneSymbolBox, kZoneSymbolBox);
    paintGlyph(painter, symbol(m_module), symbolBox, kZoneSymbolSize, GlyphWeight::Medium,
               mixed(colors.text2, colors.accent, hover));

    const QRectF titleLine(zone.x(), top + kZoneSymbolBox + kSpacing, zone.width(), kTitleHeight);
    painter.setFont(Theme::font(FontRole::CaptionMedium));
    painter.setPen(mixed(colors.text2, colors.text1, hover));
    painter.drawText(titleLine, Qt::AlignCenter | Qt::TextDontClip, title(m_module));

    const QRectF actionLine(zone.x(), titleLine.y() + kTitleHeight + kSpacing, zone.width(), kActionHeight);
    painter.setFont(Theme::font(FontRole::Micro));
    painter.setPen(colors.text3);
    painter.drawText(actionLine, Qt::AlignCenter | Qt::TextDontClip, m_action);
}

} // namespace ostrelle
