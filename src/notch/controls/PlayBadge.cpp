#include "notch/controls/PlayBadge.h"

#include "notch/Glyph.h"
#include "notch/NotchAppearance.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kSymbolPart = 0.42;
constexpr double kPlayShift = 0.035;
constexpr double kGroundOpacity = 0.66;
constexpr double kBorder = 0.5;
constexpr double kBorderOpacity = 0.2;
constexpr double kRing = 1.75;
constexpr double kRingInset = 1.75;
constexpr double kTrackOpacity = 0.2;
constexpr double kProgressOpacity = 0.92;
constexpr double kHiddenScale = 0.7;
constexpr double kPressedOpacity = 0.75;

/// Clockwise from the top, inside the edge.
void paintProgress(QPainter &painter, const QRectF &circle, double progress)
{
    constexpr double kFullTurn = 360 * 16; // in the units of drawArc()
    const double inset = kRingInset + kRing / 2;
    const QRectF ring = circle.adjusted(inset, inset, -inset, -inset);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(faded(Qt::white, kTrackOpacity), kRing));
    painter.drawEllipse(ring);
    painter.setPen(QPen(faded(Qt::white, kProgressOpacity), kRing, Qt::SolidLine, Qt::RoundCap));
    const double turn = std::clamp(progress, 0.0, 1.0) * kFullTurn;
    painter.drawArc(ring, static_cast<int>(kFullTurn / 4), -static_cast<int>(std::lround(turn)));
}

} // namespace

PlayBadge::PlayBadge(const ControlContext &context, int diameter, QWidget *parent)
    : NotchButton(context, parent)
    , m_diameter(diameter)
    , m_shown(context, 0, [this] { update(); })
    , m_shake(context, [this] { showShake(); })
{
    setFixedSize(diameter, diameter);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    describe();
}

void PlayBadge::setPlaying(bool playing)
{
    if (playing == m_isPlaying)
        return;
    m_isPlaying = playing;
    describe();
    update();
}

void PlayBadge::setShown(bool shown)
{
    if (shown == m_isShown)
        return;
    m_isShown = shown;
    setAttribute(Qt::WA_TransparentForMouseEvents, !shown);
    setFocusPolicy(shown ? Qt::TabFocus : Qt::NoFocus);
    m_shown.animateTo(shown ? 1 : 0, Motion::hover());
    refreshHover();
}

void PlayBadge::setProgress(std::optional<double> progress)
{
    if (std::exchange(m_progress, progress) != progress)
        update();
}

void PlayBadge::shake()
{
    m_shake.start();
}

/// Moves as a whole, so that nothing is cut. Relative, because it may be given another place meanwhile.
void PlayBadge::showShake()
{
    const auto offset = static_cast<int>(std::lround(m_shake.offset()));
    move(x() + offset - std::exchange(m_shaken, offset), y());
    update();
}

void PlayBadge::describe()
{
    setHelp(m_isPlaying ? QStringLiteral("Stop") : QStringLiteral("Play"));
}

double PlayBadge::scaleOf(double presence)
{
    return kHiddenScale + (1 - kHiddenScale) * presence;
}

void PlayBadge::paint(QPainter &painter, const QRectF &circle, const Look &look)
{
    if (look.presence <= 0)
        return;
    painter.save();
    painter.setOpacity(painter.opacity() * std::min(look.presence, 1.0) * (1 + (kPressedOpacity - 1) * look.press));
    painter.translate(circle.center());
    painter.scale(look.scale, look.scale);
    painter.translate(-circle.center());
    painter.setPen(Qt::NoPen);
    painter.setBrush(faded(Qt::black, kGroundOpacity));
    painter.drawEllipse(circle);
    painter.setPen(QPen(faded(Qt::white, kBorderOpacity), kBorder));
    painter.setBrush(Qt::NoBrush);
    const double inset = kBorder / 2;
    painter.drawEllipse(circle.adjusted(inset, inset, -inset, -inset));
    if (look.isPlaying && look.progress)
        paintProgress(painter, circle, *look.progress);
    // A triangle looks centred by its mass.
    const QRectF box = look.isPlaying ? circle : circle.translated(kPlayShift * circle.width(), 0);
    paintGlyph(painter, look.isPlaying ? u"stop.fill" : u"play.fill", box, kSymbolPart * circle.width(),
               GlyphWeight::Bold, Qt::white);
    painter.restore();
}

void PlayBadge::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double amount = m_shown.value();
    paint(painter, shape(),
          {.isPlaying = m_isPlaying,
           .presence = amount * presence() * m_shake.opacity(),
           .press = pressAmount(),
           .scale = appearance().reducesMotion() ? 1 : scaleOf(amount),
           .progress = m_progress});
}

} // namespace ostrelle
