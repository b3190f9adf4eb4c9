#include "inspectors/SeekBar.h"

#include "notch/NotchAppearance.h"
#include "notch/ThemeGradients.h"
#include "notch/controls/ColorMix.h"
#include "records/Motion.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr double kMilliseconds = 1000;
constexpr double kBar = 3;
constexpr double kKnob = 9;
/// The knob's middle stays inside.
constexpr double kMargin = kKnob / 2;
constexpr double kKnobAtRest = 0.6; ///< of its size, when it appears
constexpr double kFocusRing = 1.5;

} // namespace

SeekBar::SeekBar(const ControlContext &context, QWidget *parent)
    : QAbstractSlider(parent)
    , m_context(context)
    , m_hover(context, 0, [this] { update(); })
{
    setOrientation(Qt::Horizontal);
    setFixedHeight(kHeight);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::TabFocus);
    setSingleStep(kStep);
    setPageStep(3 * kStep);
    // One place for each drag, not every one on the way.
    setTracking(false);
    setAccessibleName(QStringLiteral("Position"));
    connect(this, &QAbstractSlider::actionTriggered, this, [this] { Q_EMIT sought(sliderPosition() / kMilliseconds); });
    connect(&context.appearance, &NotchAppearance::changed, this, qOverload<>(&QWidget::update));
}

void SeekBar::setTime(double position, double length)
{
    setEnabled(length > 0);
    setMaximum(static_cast<int>(std::lround(length * kMilliseconds)));
    if (!isSliderDown())
        setValue(static_cast<int>(std::lround(position * kMilliseconds)));
    update();
}

double SeekBar::shownPosition() const
{
    return sliderPosition() / kMilliseconds;
}

void SeekBar::setPresence(double presence)
{
    if (std::exchange(m_presence, presence) != presence)
        update();
}

int SeekBar::valueAt(double x) const
{
    const double part = std::clamp((x - kMargin) / std::max(width() - 2 * kMargin, 1.0), 0.0, 1.0);
    return static_cast<int>(std::lround(part * maximum()));
}

bool SeekBar::event(QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave || event->type() == QEvent::Hide)
        m_hover.animateTo(event->type() == QEvent::Enter ? 1 : 0, Motion::hover());
    return QAbstractSlider::event(event);
}

void SeekBar::changeEvent(QEvent *event)
{
    // The release is not told any more.
    if (event->type() == QEvent::EnabledChange && !isEnabled() && isSliderDown()) {
        setSliderPosition(value());
        setSliderDown(false);
    }
    QAbstractSlider::changeEvent(event);
}

void SeekBar::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(true);
    setSliderPosition(valueAt(event->position().x()));
    update();
}

void SeekBar::mouseMoveEvent(QMouseEvent *event)
{
    if (!isSliderDown())
        return;
    setSliderPosition(valueAt(event->position().x()));
    update();
}

void SeekBar::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton || !isSliderDown())
        return;
    setSliderDown(false);
    update();
}

void SeekBar::wheelEvent(QWheelEvent *event)
{
    // Somebody scrolls: nobody wants to hear something else by that.
    event->ignore();
}

void SeekBar::paintEvent(QPaintEvent *)
{
    const NotchAppearance &appearance = m_context.appearance;
    const Theme::Palette &palette = appearance.palette();
    const QRectF bar(kMargin, (height() - kBar) / 2, width() - 2 * kMargin, kBar);
    const double part = maximum() > 0 ? double(sliderPosition()) / maximum() : 0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_presence);
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.hoverTint);
    painter.drawRoundedRect(bar, kBar / 2, kBar / 2);
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    gradient.setStops(themeStops(appearance.theme(), appearance.scheme()));
    painter.save();
    painter.setClipRect(QRectF(bar.x(), bar.y(), bar.width() * part, bar.height()));
    painter.setBrush(gradient);
    painter.drawRoundedRect(bar, kBar / 2, kBar / 2);
    painter.restore();

    const double knob = isSliderDown() || hasFocus() ? 1 : std::clamp(m_hover.value(), 0.0, 1.0);
    if (knob <= 0 || !isEnabled())
        return;
    const QPointF middle(bar.x() + bar.width() * part, height() / 2.0);
    const double radius = kKnob / 2 * (appearance.reducesMotion() ? 1 : kKnobAtRest + (1 - kKnobAtRest) * knob);
    if (hasFocus()) {
        painter.setPen(QPen(palette.focusRing, kFocusRing));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(middle, radius + kFocusRing, radius + kFocusRing);
        painter.setPen(Qt::NoPen);
    }
    painter.setBrush(faded(palette.text1, knob));
    painter.drawEllipse(middle, radius, radius);
}

} // namespace ostrelle
