#pragma once

#include "files/AssetSelection.h"
#include "files/TileGrid.h"
#include "files/TileMotion.h"

#include <QList>
#include <QUuid>

#include <optional>

namespace ostrelle {

/// The grid of the shelf as one works with it: hovering, clicking, selecting, dragging out, and the keys. What is to be
/// done with entries is told by signals.
class AssetGridView : public TileGrid
{
    Q_OBJECT
public:
    AssetGridView(const ControlContext &context, AssetListModel &assets, AssetThumbnails &thumbnails, FileIcons &icons,
                  QWidget *parent);

    AssetTile tile(int row) const override;

    QList<QUuid> selectedIds() const;
    /// The selected entries when the given one is among them, else only this, which is selected then.
    QList<QUuid> idsFor(const QUuid &id);

Q_SIGNALS:
    void opened(const QList<QUuid> &ids);
    void removed(const QList<QUuid> &ids);
    void previewToggled(const QUuid &id);
    /// `grabbed` is the one under the pointer.
    void dragged(const QUuid &grabbed, const QList<QUuid> &ids);
    void menuRequested(const QUuid &id, const QPointF &position);

protected:
    void tilesMoved() override;
    bool viewportEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    enum class Part { None, Tile, PlayBadge, RemoveBadge };
    struct Hit
    {
        Part part = Part::None;
        QUuid id;

        friend bool operator==(const Hit &, const Hit &) = default;
    };

    Hit hitAt(const QPointF &position) const;
    QString toolTipOf(const Hit &hit) const;
    void refreshHover();
    void selectByPress(int row, Qt::KeyboardModifiers modifiers);
    bool moveByKey(const QKeyEvent &event);
    void removeSelected();
    void showFocus(bool shows);

    AssetSelection m_selection;
    TileMotion m_hover;
    TileMotion m_playBadge;
    TileMotion m_ring;
    std::optional<QPointF> m_pointer;
    Hit m_hit;     ///< under the pointer
    Hit m_pressed; ///< where the held button went down
    QPointF m_pressPosition;
    QUuid m_clicked; ///< the tile of the last press
    QUuid m_playing;
    bool m_showsFocus = false;
};

} // namespace ostrelle
