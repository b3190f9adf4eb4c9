#include "windows/onboarding/NotchDemo.h"

#include "foundation/TaskScheduler.h"
#include "notch/AccessibleRole.h"
#include "notch/Backdrop.h"
#include "notch/ModuleChromeMetrics.h"
#include "notch/NotchAppearance.h"
#include "notch/NotchGeometry.h"
#include "notch/NotchSurface.h"
#include "notch/PanelFrame.h"
#include "notch/TilePainting.h"
#include "notch/controls/ColorMix.h"
#include "windows/controls/DropShadow.h"
#include "windows/onboarding/DemoDesktop.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace ostrelle {
namespace {

using namespace std::chrono_literals;

constexpr double kCorner = 12;
constexpr double kEdge = 0.75;
constexpr double kShadowOffset = 8;
constexpr double kShadowDeviation = 9;

/// Of the notch, so that it opens as wide as the screen allows.
constexpr double kScale = 0.42;
/// These would be too thin at that scale.
constexpr double kSeamHeight = 1.3 / kScale;
constexpr double kRimWidth = 0.8 / kScale;

constexpr auto kClosedFor = 700ms;
constexpr auto kOpenFor = 2600ms;
constexpr Spring kOpen{.response = 0.46, .dampingFraction = 0.84};
constexpr Spring kClose{.response = 0.40, .dampingFraction = 0.92};

PanelFrame frameOf(Phase phase, double pixelRatio)
{
    return PanelFrame::atRest(NotchGeometry::compute({.phase = phase}), phase, /*hasTool=*/false, pixelRatio);
}

/// The panel's frame so far into its opening.
PanelFrame frameAt(double opening, double pixelRatio)
{
    const auto closed = AnimatedTraits<PanelFrame>::split(frameOf(Phase::Idle, pixelRatio));
    auto parts = AnimatedTraits<PanelFrame>::split(frameOf(Phase::Expanded, pixelRatio));
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts.at(i) = closed.at(i) + (parts.at(i) - closed.at(i)) * opening;
    return AnimatedTraits<PanelFrame>::join(parts);
}

void paintTiles(QPainter &painter, const PanelFrame &frame, const Theme::Palette &palette, double pixelRatio)
{
    const double content = frame.contentOpacity();
    if (content <= 0)
        return;
    const double pitch = chrome::kMarkPitch + (chrome::kTilePitch - chrome::kMarkPitch) * frame.openness;
    double x = -(static_cast<double>(kAllModules.size()) - 1) / 2 * pitch;
    for (const KestroModule module : kAllModules) {
        paintTile(painter,
                  {.module = module,
                   .centre = {x, frame.stripCentre},
                   .openness = frame.openness,
                   .content = content,
                   .plate = faded(palette.tileTint, content),
                   .plateEdge = faded(palette.plateEdge, content),
                   .color = faded(palette.text2, content)},
                  pixelRatio);
        x += pitch;
    }
}

} // namespace

NotchDemo::NotchDemo(const ControlContext &context, TaskScheduler &scheduler, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_scheduler(scheduler)
    , m_opening(
          context, 0, [this] { update(); }, 1.0 / 1000)
{
    setAccessibleRole(*this, QAccessible::Graphic);
    setAccessibleName(QStringLiteral("The notch opens at the top of the screen, and closes"));
    setFixedSize((kDemoDesktop + QSizeF(2 * kShadowRoom, 2 * kShadowRoom)).toSize());
    connect(&context.appearance, &NotchAppearance::changed, this, [this] {
        m_screen = {};
        update();
    });
}

void NotchDemo::showEvent(QShowEvent *)
{
    m_opening.jumpTo(0);
    moveAfter(kClosedFor, 1, kOpen);
}

void NotchDemo::hideEvent(QHideEvent *)
{
    m_next.cancel();
    m_opening.jumpTo(0);
}

void NotchDemo::moveAfter(std::chrono::nanoseconds delay, double target, const Spring &spring)
{
    m_next = m_scheduler.after(delay, this, [this, target, spring] {
        m_opening.animateTo(target, spring);
        if (target > 0)
            moveAfter(kOpenFor, 0, kClose);
        else
            moveAfter(kClosedFor, 1, kOpen);
    });
}

void NotchDemo::paintScreen()
{
    const ColorScheme scheme = m_context.appearance.scheme();
    const bool dark = scheme == ColorScheme::Dark;
    const double ratio = devicePixelRatioF();
    QImage desktop((kDemoDesktop * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&desktop);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(ratio, ratio);
        paintDemoDesktop(painter, scheme);
    }
    m_backdrop = blurBackdrop(desktop.scaled((kDemoDesktop / kScale / kBackdropReduction).toSize(),
                                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation),
                              scheme);

    m_screen = QPixmap((QSizeF(size()) * ratio).toSize());
    m_screen.setDevicePixelRatio(ratio);
    m_screen.fill(Qt::transparent);
    QPainter painter(&m_screen);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(kShadowRoom, kShadowRoom);
    const QRectF box(QPointF(0, 0), kDemoDesktop);
    paintDropShadow(painter, box.translated(0, kShadowOffset), kCorner, kShadowDeviation,
                    faded(Qt::black, dark ? 0.42 : 0.16));
    QBrush brush(desktop);
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(box, kCorner, kCorner);
}

void NotchDemo::paintNotch(QPainter &painter, double opening)
{
    const NotchAppearance &looks = m_context.appearance;
    const double ratio = devicePixelRatioF() * kScale;
    const PanelFrame frame = frameAt(opening, ratio);
    painter.save();
    painter.translate(kDemoDesktop.width() / 2, 0);
    painter.scale(kScale, kScale);
    paintNotchSurface(painter, {},
                      {.size = {frame.width, frame.height},
                       .expansion = frame.expansion,
                       .bottomRadius = frame.bottomRadius,
                       .topRadius = frame.topRadius,
                       .scheme = looks.scheme(),
                       .contrast = looks.contrast(),
                       .theme = looks.theme(),
                       .backdrop = m_backdrop,
                       .emphasis = {.seamHeight = kSeamHeight, .rimWidth = kRimWidth}},
                      m_cache);
    paintTiles(painter, frame, looks.palette(), ratio);
    painter.restore();
}

void NotchDemo::paintEvent(QPaintEvent *)
{
    if (m_screen.isNull() || m_screen.devicePixelRatio() != devicePixelRatioF())
        paintScreen();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(0, 0, m_screen);
    painter.translate(kShadowRoom, kShadowRoom);
    const QRectF box(QPointF(0, 0), kDemoDesktop);
    painter.setClipRect(box);
    if (m_context.appearance.reducesMotion()) {
        paintNotch(painter, 0);
        painter.setOpacity(std::clamp(m_opening.value(), 0.0, 1.0));
        if (painter.opacity() > 0)
            paintNotch(painter, 1);
        painter.setOpacity(1);
    } else {
        paintNotch(painter, m_opening.value());
    }
    painter.setClipping(false);
    painter.setBrush(Qt::NoBrush);
    const bool dark = m_context.appearance.scheme() == ColorScheme::Dark;
    painter.setPen(QPen(dark ? faded(Qt::white, 0.16) : faded(QColor(38, 12, 30), 0.22), kEdge));
    const double inset = kEdge / 2;
    painter.drawRoundedRect(box.adjusted(inset, inset, -inset, -inset), kCorner - inset, kCorner - inset);
}

} // namespace ostrelle
