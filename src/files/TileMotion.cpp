#include "files/TileMotion.h"

#include "records/Motion.h"

#include <utility>

namespace ostrelle {

TileMotion::TileMotion(const ControlContext &context, std::function<void()> changed)
    : m_context(context)
    , m_changed(std::move(changed))
{
}

void TileMotion::set(const QSet<QUuid> &tiles)
{
    std::erase_if(m_amounts, [&](const auto &entry) {
        return !tiles.contains(entry.first) && !entry.second.isMoving() && entry.second.target() == 0;
    });
    for (auto &[tile, amount] : m_amounts)
        amount.animateTo(tiles.contains(tile) ? 1 : 0, Motion::hover());
    for (const QUuid &tile : tiles) {
        const auto [entry, isNew] = m_amounts.try_emplace(tile, m_context, 0, m_changed);
        if (isNew)
            entry->second.animateTo(1, Motion::hover());
    }
}

double TileMotion::amount(const QUuid &tile) const
{
    const auto entry = m_amounts.find(tile);
    return entry == m_amounts.end() ? 0 : entry->second.value();
}

} // namespace ostrelle
