#include "inspectors/SwatchShelf.h"

#include "foundation/MakeChild.h"
#include "inspectors/Swatch.h"
#include "notch/AccessibleRole.h"
#include "notch/controls/EdgeFade.h"
#include "notch/controls/SectionLabel.h"
#include "records/Motion.h"

#include <QGraphicsEffect>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kLabelLine = 14;
constexpr int kLabelGap = 8;
constexpr int kSwatchGap = 8;
constexpr int kSwatchPitch = Swatch::kSide + kSwatchGap;
/// Around the swatches, for what shows beyond their edges.
constexpr int kShelfMargin = 5;
constexpr double kSideFade = 16;
constexpr double kShelfResponse = 0.22;
constexpr double kSwatchRest = 0.25; ///< logical pixels
constexpr double kShelfWheelStep = 3.0 * kSwatchPitch;

/// Of the swatch's widget, in content that is not scrolled.
double placeOfSwatch(int index)
{
    return kShelfMargin - Swatch::kOverhang + double(index) * kSwatchPitch;
}

} // namespace

/// Lets the row fade out at an end beyond which there is more.
class SwatchShelf::SideFade : public QGraphicsEffect
{
public:
    using QGraphicsEffect::QGraphicsEffect;

    void setReach(double left, double right)
    {
        if (left == m_left && right == m_right)
            return;
        m_left = left;
        m_right = right;
        setEnabled(left > 0 || right > 0);
        update();
    }

protected:
    void draw(QPainter *painter) override
    {
        QPoint offset;
        const QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &offset, QGraphicsEffect::NoPad);
        const QRectF whole(offset, content.deviceIndependentSize());
        paintEdgeFaded(*painter, whole, {.left = m_left, .right = m_right},
                       [&](QPainter &onto) { onto.drawPixmap(offset, content); });
    }

private:
    double m_left = 0;
    double m_right = 0;
};

SwatchShelf::Place::Place(Swatch &of, const ControlContext &context, double at, const std::function<void()> &changed)
    : swatch(of)
    , x(context, at, changed, kSwatchRest)
    , presence(context, 0, changed)
{
}

SwatchShelf::SwatchShelf(const ControlContext &context, const QString &title, QWidget *parent)
    : QWidget(parent)
    , m_context(context)
    , m_label(makeChild<SectionLabel>(this, context, title))
    , m_viewport(makeChild<QWidget>(this))
    , m_fade(makeChild<SideFade>(&m_viewport))
    , m_bar(makeChild<QScrollBar>(this))
    , m_scroll(context, m_bar, kShelfWheelStep)
{
    setAttribute(Qt::WA_NoSystemBackground);
    m_viewport.setAttribute(Qt::WA_NoSystemBackground);
    setFixedHeight(kHeight + kBelow);
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(title);
    m_viewport.setGraphicsEffect(&m_fade);
    m_fade.setEnabled(false);
    m_bar.hide();
    connect(&m_bar, &QScrollBar::valueChanged, this, &SwatchShelf::arrange);
}

SwatchShelf::~SwatchShelf() = default;

SwatchShelf::Place *SwatchShelf::find(const SampledColor &color) const
{
    const auto found = std::find_if(m_places.begin(), m_places.end(), [&](const std::unique_ptr<Place> &place) {
        return !place->isLeaving && place->swatch.color() == color;
    });
    return found == m_places.end() ? nullptr : found->get();
}

void SwatchShelf::removeGone()
{
    std::erase_if(m_places, [](const std::unique_ptr<Place> &place) {
        const bool isGone = place->isLeaving && !place->presence.isMoving();
        if (isGone)
            place->swatch.deleteLater();
        return isGone;
    });
}

void SwatchShelf::setColors(const QList<SampledColor> &colors)
{
    if (colors == m_colors)
        return;
    removeGone();
    const int focusedBefore = focusedIndex();
    const bool focusLeaves = focusedBefore >= 0 && !colors.contains(m_colors[focusedBefore]);
    m_colors = colors;
    // What was never seen has nothing to come from.
    const bool isAtOnce = !isVisible();
    for (const std::unique_ptr<Place> &place : m_places) {
        if (!place->isLeaving && !colors.contains(place->swatch.color())) {
            place->isLeaving = true;
            place->presence.animateTo(0, Motion::damped(kShelfResponse));
        }
    }
    for (int index = 0; index < static_cast<int>(colors.size()); ++index) {
        Place &place = ensurePlace(index);
        place.x.animateTo(placeOfSwatch(index), Motion::damped(kShelfResponse));
        place.presence.animateTo(1, Motion::damped(kShelfResponse));
        if (isAtOnce) {
            place.x.jumpTo(placeOfSwatch(index));
            place.presence.jumpTo(1);
        }
    }
    setTabStop();
    measure();
    if (focusLeaves && !colors.isEmpty())
        focusSwatch(std::min(focusedBefore, static_cast<int>(colors.size()) - 1));
    for (const std::unique_ptr<Place> &place : m_places)
        place->swatch.setEnabled(!place->isLeaving);
}

SwatchShelf::Place &SwatchShelf::ensurePlace(int index)
{
    const SampledColor color = m_colors[index];
    if (Place *place = find(color))
        return *place;
    auto &swatch = makeChild<Swatch>(&m_viewport, m_context, color);
    connect(&swatch, &QAbstractButton::clicked, this, [this, color] { Q_EMIT chosen(color); });
    connect(&swatch, &Swatch::menuRequested, this,
            [this, color, &swatch](const QPointF &position) { Q_EMIT menuRequested(color, &swatch, position); });
    connect(&swatch, &Swatch::focused, this, [this, color] {
        m_lastFocused = color;
        setTabStop();
        reveal(static_cast<int>(m_colors.indexOf(color)));
    });
    swatch.setCurrent(color == m_current);
    swatch.show();
    return *m_places.emplace_back(
        std::make_unique<Place>(swatch, m_context, placeOfSwatch(index), [this] { arrange(); }));
}

QList<QWidget *> SwatchShelf::focusOrder() const
{
    QList<QWidget *> order;
    for (const SampledColor &color : m_colors)
        order.append(&find(color)->swatch);
    return order;
}

/// The swatch that had the focus last, else the one on display, else the first.
void SwatchShelf::setTabStop()
{
    if (m_colors.isEmpty())
        return;
    SampledColor stop = m_colors.first();
    if (m_current && m_colors.contains(*m_current))
        stop = *m_current;
    if (m_lastFocused && m_colors.contains(*m_lastFocused))
        stop = *m_lastFocused;
    for (const SampledColor &color : std::as_const(m_colors))
        find(color)->swatch.setTabStop(color == stop);
}

void SwatchShelf::setCurrent(const std::optional<SampledColor> &color)
{
    m_current = color;
    for (const std::unique_ptr<Place> &place : m_places)
        place->swatch.setCurrent(place->swatch.color() == color);
    setTabStop();
}

int SwatchShelf::focusedIndex() const
{
    for (int index = 0; index < static_cast<int>(m_colors.size()); ++index) {
        if (swatchAt(index).hasFocus())
            return index;
    }
    return -1;
}

void SwatchShelf::focusSwatch(int index)
{
    swatchAt(index).setFocus(Qt::TabFocusReason);
}

void SwatchShelf::reveal(int index)
{
    const double left = index * double(kSwatchPitch);
    const double right = left + Swatch::kSide + 2 * kShelfMargin - m_viewport.width();
    const double kept = index + 1 < m_colors.size() ? kSwatchPitch : 0; // a look at the next one
    const double least = right + kept;
    const double most = index > 0 ? left - kSwatchPitch : left;
    const double wanted = std::clamp(m_scroll.target(), std::min(least, most), std::max(least, most));
    if (wanted != m_scroll.target())
        m_scroll.moveTo(wanted);
}

void SwatchShelf::measure()
{
    const int content = 2 * kShelfMargin + static_cast<int>(m_colors.size()) * kSwatchPitch - kSwatchGap;
    m_bar.setRange(0, std::max(content - m_viewport.width(), 0));
    m_scroll.clamp();
    arrange();
}

void SwatchShelf::arrange()
{
    for (const std::unique_ptr<Place> &place : m_places) {
        place->swatch.move(static_cast<int>(std::lround(place->x.value())) - m_bar.value(),
                           kShelfMargin - Swatch::kOverhang);
        place->swatch.setPresence(place->presence.value());
        if (place->isLeaving && !place->presence.isMoving())
            place->swatch.hide();
    }
    m_fade.setReach(std::min<double>(kSideFade, m_bar.value()),
                    std::min<double>(kSideFade, m_bar.maximum() - m_bar.value()));
}

void SwatchShelf::resizeEvent(QResizeEvent *)
{
    m_label.setGeometry(kSide, 0, width() - 2 * kSide, kLabelLine);
    m_viewport.setGeometry(kSide - kShelfMargin, kLabelLine + kLabelGap - kShelfMargin,
                           width() - 2 * (kSide - kShelfMargin), Swatch::kSide + 2 * kShelfMargin);
    measure();
}

void SwatchShelf::wheelEvent(QWheelEvent *event)
{
    if (m_bar.maximum() == 0) {
        QWidget::wheelEvent(event);
        return;
    }
    // A row goes sideways, whichever way the wheel turns.
    const bool isSideways = std::abs(event->angleDelta().x()) > std::abs(event->angleDelta().y());
    const QPoint pixels = isSideways ? event->pixelDelta().transposed() : event->pixelDelta();
    const QPoint angle = isSideways ? event->angleDelta().transposed() : event->angleDelta();
    m_scroll.turnWheel(QWheelEvent(event->position(), event->globalPosition(), pixels, angle, event->buttons(),
                                   event->modifiers(), event->phase(), event->inverted()));
    event->accept();
}

} // namespace ostrelle
