#pragma once

#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"
#include "notch/controls/RowPlate.h"
#include "notch/controls/SmoothScroll.h"

#include <QHash>
#include <QListView>
#include <QSet>
#include <QUuid>

#include <functional>
#include <utility>

namespace ostrelle {

/// A scrolling list of plates, which fades out at its end while there is more below. It scrolls smoothly, and its rows
/// can glide to the places that a change gave them. Rows are known by ids; only the visible ones are painted.
class RowListView : public QListView
{
    Q_OBJECT
public:
    /// Over how many logical pixels the list fades out at its end.
    static constexpr double kFade = 22;

    /// `topPadding` stands above the first row and scrolls with it.
    RowListView(const ControlContext &context, int topPadding, QWidget *parent);

    /// How many rows fit.
    int rowsPerPage() const;
    int rowCount() const;
    virtual QUuid idAt(int row) const = 0;
    /// -1: it is not in the list.
    int rowOf(const QUuid &id) const;
    /// Where the row is at the moment, gliding included; one pitch high, in the coordinates of viewport(), as all
    /// positions here.
    QRectF rowRect(int row) const;
    QRectF plateOf(int row) const { return RowPlate::plate(rowRect(row)); }
    /// Where the row belongs.
    double placeOf(int row) const;

    /// Runs `change`, after which the rows glide from where they were to where they are, and new ones fade in.
    void glideThrough(const std::function<void()> &change);
    /// In two halves, around a change.
    void beginGlide();
    void endGlide();

    /// At once.
    void scrollBy(double distance) { m_scroll.jumpTo(m_scroll.position() + distance); }
    /// Brings the row to the middle.
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;
    /// What belongs there, whatever still glides; gaps belong to the row above.
    QModelIndex indexAt(const QPoint &position) const override;
    QRect visualRect(const QModelIndex &index) const override;

protected:
    const ControlContext &context() const { return m_context; }

    SmoothScroll &scroll() { return m_scroll; }
    /// First and last of those that are painted.
    std::pair<int, int> visibleRows() const;
    /// How much is left at the end of the list of something at `y`.
    double fadeAt(double y) const;

    /// Something made the rows stand elsewhere: what stands on them follows.
    virtual void rowsMoved();
    /// How far the row is from its place.
    virtual double offsetOf(const QUuid &id) const;
    /// The row that is painted over the others, or -1.
    virtual int topmostRow() const { return -1; }

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void paintRow(QPainter &painter, int row);

    ControlContext m_context;
    int m_topPadding;
    SmoothScroll m_scroll;
    QHash<QUuid, double> m_before; ///< where the rows were when the glide began
    /// How far rows were from their places then; times m_glide.
    QHash<QUuid, double> m_offsets;
    QSet<QUuid> m_new;
    AnimatedNumber m_glide;
};

} // namespace ostrelle
