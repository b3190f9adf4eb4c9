#pragma once

#include "clipboard/ClipboardRowDelegate.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QHash>
#include <QListView>
#include <QUuid>

#include <functional>
#include <optional>

namespace ostrelle {

class ClipboardProxyModel;
class ClipboardRowPictures;
class FileIcons;
class GlyphButton;

/// The scrolling list of the clipboard tool. The selected item stays selected when it is filtered out and comes back;
/// its row has the two buttons and is brought to the middle.
class ClipboardListView : public QListView
{
    Q_OBJECT
public:
    ClipboardListView(const ControlContext &context, ClipboardProxyModel &results, ClipboardRowPictures &pictures,
                      const FileIcons &icons, QWidget *parent);
    ~ClipboardListView() override;

    enum class Arrival { Moving, AtOnce };

    /// The selected item, also while it is not among the results; null when there is none.
    QUuid selectedId() const { return m_selected; }
    void select(const QUuid &id, Arrival arrival = Arrival::Moving);
    /// The row of the selected item, or -1.
    int selectedRow() const { return currentIndex().row(); }
    /// How many rows fit.
    int rowsPerPage() const;
    /// Where the row is, in the coordinates of viewport().
    QRectF plateOf(int row) const;
    /// After the search changed: the selected row in the middle, else the first at the top.
    void settleScroll();
    /// Runs `change`, after which the rows glide from where they were to where they are.
    void glideThrough(const std::function<void()> &change);

    GlyphButton &pinButton() { return m_pin; }
    GlyphButton &deleteButton() { return m_delete; }

    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

Q_SIGNALS:
    void used(const QUuid &id);
    void pinToggled(const QUuid &id);
    void deleted(const QUuid &id);
    /// `position` in the coordinates of viewport().
    void menuRequested(const QUuid &id, const QPointF &position);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void followResults();
    void scrollBy(double distance);
    void showScroll();
    void placeButtons();
    double offsetOf(const QUuid &id) const;
    void paintRows(QPainter &painter, int first, int last);

    ControlContext m_context;
    ClipboardProxyModel &m_results;
    ClipboardRowPictures &m_pictures;
    ClipboardRowDelegate m_rows;
    GlyphButton &m_pin;
    GlyphButton &m_delete;

    QUuid m_selected;
    QUuid m_leaving;
    AnimatedNumber m_handover;
    AnimatedNumber m_scroll;
    bool m_isShowingScroll = false;
    /// How far rows were from their places when the glide began; times m_glide.
    QHash<QUuid, double> m_offsets;
    AnimatedNumber m_glide;
    std::optional<QPointF> m_pointer; ///< global
    QUuid m_pressed;
    QPointF m_pressPosition; ///< global
};

} // namespace ostrelle
