#include "notch/ToolRegistry.h"

#include <utility>

namespace ostrelle {

void ToolRegistry::add(KestroModule module, Tool tool)
{
    m_tools.insert_or_assign(module, std::move(tool));
}

const Tool *ToolRegistry::find(KestroModule module) const
{
    const auto it = m_tools.find(module);
    return it == m_tools.end() ? nullptr : &it->second;
}

ToolView &ToolRegistry::makeView(KestroModule module, const ControlContext &context, QWidget &parent) const
{
    return m_tools.at(module).makeView(context, parent);
}

std::optional<ModuleBadge> ToolRegistry::badge(KestroModule module) const
{
    const Tool *tool = find(module);
    return tool && tool->badge ? tool->badge() : std::nullopt;
}

void ToolRegistry::notifyBadgeChanged(KestroModule module)
{
    Q_EMIT badgeChanged(module);
}

} // namespace ostrelle
