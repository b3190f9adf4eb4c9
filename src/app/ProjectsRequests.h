#pragma once

namespace ostrelle {

class FileOpening;
class FilePresence;
class ProjectsService;
class RequestRouter;

/// "projects.list", "projects.add" of folders that the command has found to exist, "projects.rename", "projects.move",
/// "projects.remove", "projects.open". Edits are on the disk before they are answered. What a command removes or moves
/// is not for undo in the panel.
void addProjectsRequests(RequestRouter &router, ProjectsService &projects, FilePresence &presence,
                         FileOpening &opening);

} // namespace ostrelle
