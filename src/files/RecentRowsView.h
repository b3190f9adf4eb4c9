#pragma once

#include "files/RecentRow.h"
#include "files/TileMotion.h"
#include "notch/controls/RowListView.h"
#include "notch/controls/Shake.h"

#include <QStyledItemDelegate>

#include <optional>

namespace ostrelle {

class RecentListModel;

/// All recent files as a scrolling list. One row is active: the one under the pointer until a key chooses another.
/// Return opens the active file, Space plays it, Delete forgets it.
class RecentRowsView : public RowListView
{
    Q_OBJECT
public:
    /// `symbol` stands where there is no picture.
    RecentRowsView(const ControlContext &context, RecentListModel &recents, QString symbol, QWidget *parent);
    ~RecentRowsView() override;

    QUuid idAt(int row) const override;
    QUuid activeId() const { return m_active; }
    /// Of everything in it, 0 to 1.
    void setOpacity(double opacity);
    void shake(const QUuid &id);

Q_SIGNALS:
    void opened(const QUuid &id);
    void forgotten(const QUuid &id);
    void previewToggled(const QUuid &id);

protected:
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void rowsMoved() override;
    void scrollContentsBy(int dx, int dy) override;
    void paintEvent(QPaintEvent *event) override;

private:
    class Delegate : public QStyledItemDelegate
    {
    public:
        explicit Delegate(RecentRowsView &view);
        void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
        QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    private:
        RecentRowsView &m_view;
    };

    enum class Part { None, Row, PlayBadge, Forget };
    struct Hit
    {
        Part part = Part::None;
        QUuid id;

        friend bool operator==(const Hit &, const Hit &) = default;
    };

    RecentRow rowLook(const RecentEntry &entry) const;
    Hit hitAt(const QPointF &position) const;
    QString toolTipOf(const Hit &hit) const;
    void followModel();
    void followPointer();
    void refresh();
    void choose(int row);
    bool chooseByKey(int key);

    RecentListModel &m_recents;
    QString m_symbol;
    Delegate m_delegate;
    TileMotion m_tint;
    TileMotion m_playBadge;
    TileMotion m_ring;
    Shake m_shake;
    QUuid m_shaken;
    double m_opacity = 1;

    QUuid m_active;
    bool m_isByPointer = false; ///< the active row is the one under the pointer
    std::optional<QPointF> m_pointer;
    QPointF m_globalPointer;
    Hit m_hit;     ///< under the pointer
    Hit m_pressed; ///< where the held button went down
};

} // namespace ostrelle
