#pragma once

#include "notch/controls/ControlContext.h"
#include "records/ColorLists.h"

#include <QList>
#include <QWidget>

#include <array>
#include <optional>

namespace ostrelle {

class SwatchShelf;

/// The recent colours and the favorites under a hairline, each only when there are some.
class SwatchShelves : public QWidget
{
    Q_OBJECT
public:
    SwatchShelves(const ControlContext &context, QWidget *parent);

    void setLists(const ColorLists &lists);
    void setCurrent(const std::optional<SampledColor> &color);

    /// What they take, logical pixels; 0 without colours.
    int wantedHeight() const;
    /// Goes to a neighbour of the swatch that has the focus, or of the one on display, and chooses it: Left, Right, Up,
    /// Down, Home and End. False without colours.
    bool walk(int key);
    /// The favorite that has the focus.
    std::optional<SampledColor> focusedFavorite() const;
    /// The swatches in the order of the Tab key.
    QList<QWidget *> focusOrder() const;

Q_SIGNALS:
    void chosen(const SampledColor &color);
    void menuRequested(const SampledColor &color, QWidget *anchor, const QPointF &position);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    struct Spot
    {
        int shelf = 0; ///< among those that are shown
        int index = 0;
    };

    QList<SwatchShelf *> shownShelves() const;
    std::optional<Spot> spotOfFocus() const;
    std::optional<Spot> spotOfCurrent() const;
    Spot neighbour(const Spot &spot, int key) const;
    void arrange();

    ControlContext m_context;
    SwatchShelf &m_recents;
    SwatchShelf &m_favorites;
    std::optional<SampledColor> m_current;
};

} // namespace ostrelle
