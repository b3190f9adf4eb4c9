#include "notch/SettingsButton.h"

#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"
#include "updates/UpdateService.h"

#include <QPainter>

namespace ostrelle {
namespace {

constexpr double kSymbolSize = 12;
/// From the button's centre, to the right and up.
constexpr double kDotOffset = 6.5;
constexpr double kDotRadius = 3;
constexpr double kRing = 1.5;

} // namespace

SettingsButton::SettingsButton(const ControlContext &context, UpdateService &updates, QWidget *parent)
    : GlyphButton(
          context,
          {.symbol = QStringLiteral("gearshape"), .help = QStringLiteral("Settings"), .systemSize = kSymbolSize},
          parent)
    , m_updates(updates)
    , m_dot(context, 0, [this] { update(); })
    , m_watch(updates.bindableState().addNotifier([this] { follow(); }))
{
    follow();
}

void SettingsButton::follow()
{
    const bool isAvailable = std::holds_alternative<updateStates::Available>(m_updates.state());
    setHelp(isAvailable ? QStringLiteral("Settings — an update is available") : QStringLiteral("Settings"));
    const double dot = isAvailable ? 1 : 0;
    if (isVisible())
        m_dot.animateTo(dot, Motion::hover());
    else
        m_dot.jumpTo(dot);
}

void SettingsButton::paintEvent(QPaintEvent *event)
{
    GlyphButton::paintEvent(event);
    if (m_dot.value() <= 0)
        return;
    const Theme::Palette &palette = appearance().palette();
    const double opacity = presence() * std::min(m_dot.value(), 1.0);
    const double scale = appearance().reducesMotion() ? 1 : m_dot.value();
    const QPointF centre = shape().center() + QPointF(kDotOffset, -kDotOffset);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const auto disc = [&](double radius, const QColor &color) {
        painter.setBrush(faded(color, opacity));
        painter.drawEllipse(centre, radius * scale, radius * scale);
    };
    disc(kDotRadius + kRing, palette.surfaceTone);
    disc(kDotRadius, palette.accent);
}

} // namespace ostrelle
