#include "notch/ModuleTile.h"

#include "notch/AccessibleRole.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchAppearance.h"
#include "notch/Plate.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace ostrelle {
namespace {

constexpr double kMarkHeight = 20;
constexpr double kHoverScale = 1.03;
constexpr double kPressedScale = 0.97;
constexpr double kPressedOpacity = 0.8;

constexpr double kBadgeHeight = 14;
constexpr double kBadgeMinimumWidth = 15;
constexpr double kBadgePadding = 4.5;
constexpr double kBadgeLeft = 7;
constexpr double kBadgeRise = 6;
constexpr int kBadgeFont = 9; ///< pixels
constexpr double kDot = 8;
constexpr double kDotLeft = 12;
constexpr double kDotRise = 3;

double between(double from, double to, double amount)
{
    return from + (to - from) * amount;
}

} // namespace

ModuleTile::ModuleTile(const ControlContext &context, KestroModule module, QWidget *parent)
    : NotchButton(context, parent)
    , m_module(module)
    , m_activity(context, 0, [this] { update(); })
{
    setAccessibleDescription(blurb(module));
    setCheckable(true);
    setAccessibleRole(*this, QAccessible::Button); // a button that can be checked would be called a check box
    setMouseTracking(true);
    applyForm();
}

void ModuleTile::applyForm()
{
    setToolTip(isOpen() ? blurb(m_module) : title(m_module));
    setAccessibleName(title(m_module));
    setFocusPolicy(isOpen() ? Qt::TabFocus : Qt::NoFocus);
    if (!isOpen())
        clearFocus();
    setHovered(false);
}

void ModuleTile::setActive(bool active)
{
    setChecked(active);
    if (m_look.content > 0)
        m_activity.animateTo(active ? 1 : 0, Motion::hover());
    else
        m_activity.jumpTo(active ? 1 : 0);
    update();
}

void ModuleTile::setBadge(const std::optional<ModuleBadge> &badge)
{
    if (badge == m_badge)
        return;
    m_badge = badge;
    update();
}

void ModuleTile::setLook(const StripLook &look, const QPointF &centre)
{
    const bool wasOpen = isOpen();
    m_look = look;
    // Plate and caption are as high as they will be from the moment they begin to show.
    const QSizeF size(between(chrome::kMarkPitch, chrome::kTilePitch, look.openness),
                      look.content > 0 ? chrome::kStripHeight : kMarkHeight);
    const QRect frame = QRectF(centre - QPointF(size.width(), size.height()) / 2, size).toAlignedRect();
    if (frame != geometry()) {
        setGeometry(frame);
        // It may have left a pointer that rests, as a mark on its way to its tile does. If not, the next motion tells.
        setHovered(false);
    }
    m_centre = centre - frame.topLeft();
    if (isOpen() != wasOpen)
        applyForm();
    update();
}

QRectF ModuleTile::shape() const
{
    return tileShape({.module = m_module, .centre = m_centre, .openness = m_look.openness, .content = m_look.content});
}

double ModuleTile::cornerRadius() const
{
    return kPlateRadius;
}

bool ModuleTile::hitButton(const QPoint &position) const
{
    return isOpen() && rect().contains(position);
}

void ModuleTile::mouseMoveEvent(QMouseEvent *event)
{
    setHovered(isInteractive() && rect().contains(event->position().toPoint()));
    NotchButton::mouseMoveEvent(event);
}

void ModuleTile::keyPressEvent(QKeyEvent *event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        Q_EMIT focusStep(-1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Down:
        Q_EMIT focusStep(1);
        break;
    default:
        NotchButton::keyPressEvent(event);
    }
}

QColor ModuleTile::contentColor() const
{
    const Theme::Palette &palette = appearance().palette();
    const double lit = std::max(m_activity.value() * m_look.toolness, hoverAmount());
    const QColor open = mixed(palette.text2, palette.text1, lit);
    const QColor closed = faded(Qt::white, m_look.peekOpacity);
    return faded(mixed(closed, open, m_look.content), 1 + (kPressedOpacity - 1) * pressAmount());
}

void ModuleTile::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double hoverScale = appearance().reducesMotion() ? 1 : between(1, kHoverScale, hoverAmount());
    const double scale = hoverScale * pressScale(kPressedScale);
    painter.translate(m_centre);
    painter.scale(scale, scale);
    painter.translate(-m_centre);
    const TilePicture tile = picture();
    paintTile(painter, tile, devicePixelRatioF());
    if (m_look.content > 0)
        paintBadge(painter, QPointF(m_centre.x(), tileSymbolBox(tile, devicePixelRatioF()).top()));
}

TilePicture ModuleTile::picture() const
{
    TilePicture tile{.module = m_module,
                     .centre = m_centre,
                     .openness = m_look.openness,
                     .content = m_look.content,
                     .color = contentColor()};
    const Theme::Palette &palette = appearance().palette();
    // In a tool the strip paints the active tile's plate, which slides, and the others have one only under the pointer.
    const double resting = m_look.content * (1 - m_look.toolness);
    const double hover = m_look.content * hoverAmount() * (1 - m_activity.value() * m_look.toolness);
    if (resting <= 0 && hover <= 0)
        return tile;
    tile.plate = mixed(faded(palette.tileTint, resting), palette.hoverTint, hover);
    tile.plateEdge = faded(palette.plateEdge, std::max(resting, hover));
    return tile;
}

void ModuleTile::paintBadge(QPainter &painter, const QPointF &symbolTop) const
{
    if (!m_badge)
        return;
    const Theme::Palette &palette = appearance().palette();
    const double opacity = m_look.content;
    painter.setPen(Qt::NoPen);
    if (const auto *dot = std::get_if<DotBadge>(&*m_badge)) {
        const QRectF disc(symbolTop + QPointF(kDotLeft, -kDotRise), QSizeF(kDot, kDot));
        painter.setBrush(faded(QColor::fromRgbF(static_cast<float>(dot->red), static_cast<float>(dot->green),
                                                static_cast<float>(dot->blue)),
                               opacity));
        painter.drawEllipse(disc);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(faded(palette.dotRing, opacity), 1));
        painter.drawEllipse(disc.adjusted(0.5, 0.5, -0.5, -0.5));
        return;
    }
    QFont font = Theme::font(FontRole::SectionLabel);
    font.setLetterSpacing(QFont::AbsoluteSpacing, 0);
    font.setPixelSize(kBadgeFont);
    const QString text = QString::number(std::get<CountBadge>(*m_badge).count);
    const double width = std::max(kBadgeMinimumWidth, QFontMetricsF(font).horizontalAdvance(text) + 2 * kBadgePadding);
    const QRectF capsule(symbolTop + QPointF(kBadgeLeft, -kBadgeRise), QSizeF(width, kBadgeHeight));
    painter.setBrush(faded(palette.accent, opacity));
    painter.drawRoundedRect(capsule, kBadgeHeight / 2, kBadgeHeight / 2);
    painter.setFont(font);
    painter.setPen(faded(Qt::white, opacity));
    painter.drawText(capsule, Qt::AlignCenter, text);
}

} // namespace ostrelle
