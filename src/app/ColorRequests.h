#pragma once

namespace ostrelle {

class ColorService;
class DefaultsDatabase;
class RequestRouter;

/// "color.list", "color.add", "color.favorite", "color.clear". Edits are on the disk, in `defaults`, before they are
/// answered. What a command does to the favorites is not for undo in the panel.
void addColorRequests(RequestRouter &router, ColorService &colors, DefaultsDatabase &defaults);

} // namespace ostrelle
