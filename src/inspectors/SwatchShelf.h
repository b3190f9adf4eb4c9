#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "notch/controls/SmoothScroll.h"
#include "records/SampledColor.h"

#include <QList>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QScrollBar;

namespace ostrelle {

class SectionLabel;
class Swatch;

/// A titled row of swatches. Those that do not fit are reached by scrolling sideways. When the colours change, swatches
/// glide to their places, new ones fade in and the others out. One swatch is the Tab key's stop; the focus stays where
/// it was when its swatch leaves.
class SwatchShelf : public QWidget
{
    Q_OBJECT
public:
    static constexpr int kHeight = 48;
    /// Below, for what shows beyond the swatches.
    static constexpr int kBelow = 4;
    static constexpr int kSide = 14;

    SwatchShelf(const ControlContext &context, const QString &title, QWidget *parent);
    ~SwatchShelf() override;

    const QList<SampledColor> &colors() const { return m_colors; }
    /// No colour twice.
    void setColors(const QList<SampledColor> &colors);
    /// The one on display gets the ring.
    void setCurrent(const std::optional<SampledColor> &color);

    /// Index of the swatch that has the focus; -1 when none has.
    int focusedIndex() const;
    /// Gives it the focus and brings it to view.
    void focusSwatch(int index);
    /// The swatches in the order of the Tab key.
    QList<QWidget *> focusOrder() const;

Q_SIGNALS:
    void chosen(const SampledColor &color);
    void menuRequested(const SampledColor &color, QWidget *anchor, const QPointF &position);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    /// A swatch and where it is on its way.
    struct Place
    {
        Place(Swatch &of, const ControlContext &context, double at, const std::function<void()> &changed);

        Swatch &swatch;
        AnimatedNumber x;
        AnimatedNumber presence;
        bool isLeaving = false;
    };
    class SideFade;

    void removeGone();
    Place *find(const SampledColor &color) const;
    Swatch &swatchAt(int index) const { return find(m_colors[index])->swatch; }
    Place &ensurePlace(int index);
    void setTabStop();
    void reveal(int index);
    void measure();
    void arrange();

    ControlContext m_context;
    SectionLabel &m_label;
    QWidget &m_viewport;
    SideFade &m_fade;
    QScrollBar &m_bar; ///< never seen
    SmoothScroll m_scroll;
    QList<SampledColor> m_colors;
    std::optional<SampledColor> m_current;
    std::optional<SampledColor> m_lastFocused;
    /// Those that have left leave this with the next change.
    std::vector<std::unique_ptr<Place>> m_places;
};

} // namespace ostrelle
