#pragma once

#include "files/AssetGridLayout.h"
#include "files/AssetTile.h"
#include "files/TileGlide.h"
#include "notch/controls/ControlContext.h"
#include "notch/controls/SmoothScroll.h"

#include <QList>
#include <QListView>
#include <QUuid>

#include <optional>

namespace ostrelle {

class AssetListModel;
class AssetThumbnails;
class FileIcons;

/// A scrolling grid of tiles that only shows: it knows nothing of pointer and keys. Changes of the list glide, the end
/// fades out while there is more below, and only tiles in sight cost anything. Positions are in the coordinates of
/// viewport().
class TileGrid : public QListView
{
    Q_OBJECT
public:
    TileGrid(const ControlContext &context, AssetListModel &assets, AssetThumbnails &thumbnails, FileIcons &icons,
             QWidget *parent);
    ~TileGrid() override;

    AssetGridLayout gridLayout() const;
    /// Where the tile belongs, whatever still glides.
    QRectF tileRect(int row) const;
    /// As it looks now.
    virtual AssetTile tile(int row) const;
    /// Of the desktop for the kind of its file, `side` logical pixels wide; nothing while it is being loaded.
    std::optional<QImage> icon(int row, int side) const;

    QModelIndex indexAt(const QPoint &position) const override;
    QRect visualRect(const QModelIndex &index) const override;
    void scrollTo(const QModelIndex &index, ScrollHint hint = EnsureVisible) override;

protected:
    const ControlContext &context() const { return m_context; }
    AssetListModel &assets() const { return m_assets; }

    /// Tiles stand elsewhere now, or are others.
    virtual void tilesMoved();

    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void doItemsLayout() override;
    void updateGeometries() override;
    int verticalOffset() const override;
    QRegion visualRegionForSelection(const QItemSelection &selection) const override;
    void wheelEvent(QWheelEvent *event) override;

private:
    struct Shown
    {
        QUuid id;
        AssetTile tile;
        QPointF place;
        double opacity = 1;
    };

    void followSteps();
    void updateTile(const QUuid &id);
    QList<Shown> shownTiles(int first, int last) const;
    void wantPictures(int first, int last);

    ControlContext m_context;
    AssetListModel &m_assets;
    AssetThumbnails &m_thumbnails;
    FileIcons &m_icons;
    SmoothScroll m_scroll;
    TileGlide m_glide;
    TileCache m_cache;
    QList<QUuid> m_ids;   ///< before the next steps
    QList<Shown> m_shown; ///< as painted last
};

} // namespace ostrelle
