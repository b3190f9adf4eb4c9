#pragma once

#include "files/AssetListModel.h"
#include "notch/ToolView.h"
#include "notch/controls/ControlContext.h"

#include <memory>

namespace ostrelle {

class AssetGridView;
class AssetThumbnails;
class DragOut;
class DropOverlay;
class DropWell;
class EmptyStateView;
class FileIcons;
class FileOpening;
class GlyphButton;
class ItemCount;
class NotchMenu;
class Popups;
class ThumbnailProgress;

/// The shelf tool: a grid of what waits there, to be dragged out, opened, shown, played and removed. Files dropped on
/// it are put on the shelf. Ctrl+Z brings back what was removed last.
class AssetsModuleView : public ToolView
{
    Q_OBJECT
public:
    struct Surroundings
    {
        AssetShelfService &shelf;
        AssetThumbnails &thumbnails;
        FilePresence &presence;
        AudioPreview &preview;
        FileIcons &icons;
        FileOpening &opening;
        DragOut &dragOut;
        Popups &popups;
    };

    AssetsModuleView(const Surroundings &surroundings, const ControlContext &context, QWidget *parent);
    ~AssetsModuleView() override;

    std::optional<double> wantedBodyHeight() const override;
    QList<QWidget *> headerActions() override;
    void appeared() override;
    bool acceptsDrop(const QStringList &paths) const override;
    void setDropTargeted(bool targeted) override;
    bool dropFiles(const QStringList &paths) override;
    void undo() override;

    AssetGridView &grid() { return m_grid; }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    QStringList pathsOf(const QList<QUuid> &ids) const;
    void open(const QList<QUuid> &ids);
    void togglePreview(const QUuid &id);
    void dragOut(const QUuid &grabbed, const QList<QUuid> &ids);
    void openMenu(const QUuid &id, const QPointF &position);
    void followShelf();
    void showTarget();

    Surroundings m_around;
    ControlContext m_context;
    AssetListModel m_assets;
    DropWell &m_well;
    EmptyStateView &m_empty;
    AssetGridView &m_grid;
    ThumbnailProgress &m_progress;
    DropOverlay &m_overlay;
    ItemCount &m_count;
    GlyphButton &m_clear;
    std::unique_ptr<NotchMenu> m_menu;
    bool m_isTargeted = false;
    double m_wantedHeight = 0;
    int m_shownCount = -1;
};

} // namespace ostrelle
