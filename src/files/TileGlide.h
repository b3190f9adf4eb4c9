#pragma once

#include "files/AssetTile.h"
#include "notch/controls/AnimatedNumber.h"
#include "notch/controls/ControlContext.h"

#include <QHash>
#include <QList>
#include <QPointF>
#include <QSet>
#include <QUuid>

#include <functional>

namespace ostrelle {

/// What a change of the list makes visible: tiles glide from where they were to where they are, new ones fade in,
/// removed ones fade out in their place. All on one spring.
class TileGlide
{
public:
    struct Leaving
    {
        AssetTile tile;
        QPointF place;
    };
    struct Change
    {
        QHash<QUuid, QPointF> offsets; ///< of where tiles were from where they are
        QSet<QUuid> arriving;
        QList<Leaving> leaving;
    };

    TileGlide(const ControlContext &context, std::function<void()> changed);

    void begin(Change change);
    bool isMoving() const { return m_left.isMoving(); }
    /// How far the tile is from its place.
    QPointF offset(const QUuid &tile) const;
    /// Opacity of the tile.
    double presence(const QUuid &tile) const;
    const QList<Leaving> &leaving() const { return m_change.leaving; }
    double leavingOpacity() const { return m_left.value(); }

private:
    ControlContext m_context;
    AnimatedNumber m_left; ///< 1 at the beginning, 0 at the end
    Change m_change;
};

} // namespace ostrelle
