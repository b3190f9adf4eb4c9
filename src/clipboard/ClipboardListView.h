#pragma once

#include "clipboard/ClipboardRowDelegate.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/RowListView.h"

#include <optional>

namespace ostrelle {

class ClipboardProxyModel;
class ClipboardRowPictures;
class FileIcons;
class GlyphButton;

/// The scrolling list of the clipboard tool. The selected item stays selected when it is filtered out and comes back;
/// its row has the two buttons and is brought to the middle.
class ClipboardListView : public RowListView
{
    Q_OBJECT
public:
    ClipboardListView(const ControlContext &context, ClipboardProxyModel &results, ClipboardRowPictures &pictures,
                      FileIcons &icons, QWidget *parent);
    ~ClipboardListView() override;

    enum class Arrival { Moving, AtOnce };

    /// The selected item, also while it is not among the results; null when there is none.
    QUuid selectedId() const { return m_selected; }
    void select(const QUuid &id, Arrival arrival = Arrival::Moving);
    /// The row of the selected item, or -1.
    int selectedRow() const { return currentIndex().row(); }
    QUuid idAt(int row) const override;
    /// After the search changed: the selected row in the middle, else the first at the top.
    void settleSearch();

    GlyphButton &pinButton() { return m_pin; }
    GlyphButton &deleteButton() { return m_delete; }

Q_SIGNALS:
    void used(const QUuid &id);
    void pinToggled(const QUuid &id);
    void deleted(const QUuid &id);
    /// `position` in the coordinates of viewport().
    void menuRequested(const QUuid &id, const QPointF &position);

protected:
    void paintEvent(QPaintEvent *event) override;
    void rowsMoved() override;
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void followResults();

    ClipboardProxyModel &m_results;
    ClipboardRowPictures &m_pictures;
    ClipboardRowDelegate m_rows;
    GlyphButton &m_pin;
    GlyphButton &m_delete;

    QUuid m_selected;
    QUuid m_leaving;
    AnimatedNumber m_handover;
    std::optional<QPointF> m_pointer; ///< global
    QUuid m_pressed;
    QPointF m_pressPosition; ///< global
};

} // namespace ostrelle
