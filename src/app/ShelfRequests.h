#pragma once

namespace ostrelle {

class AssetShelfService;
class RequestRouter;

/// "shelf.list", "shelf.add" of paths that the command has found to exist, "shelf.remove", "shelf.clear". Edits are on
/// the disk before they are answered. What a command removes is not for undo in the panel.
void addShelfRequests(RequestRouter &router, AssetShelfService &shelf);

} // namespace ostrelle
