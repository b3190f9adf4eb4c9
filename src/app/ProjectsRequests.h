#pragma once

namespace ostrelle {

class FileOpening;
class ProjectsService;
class RequestRouter;

/// "projects.list", "projects.add" of folders that the command has found to exist, "projects.rename", "projects.move",
/// "projects.remove", "projects.open". What a command removes or moves is not for undo in the panel.
void addProjectsRequests(RequestRouter &router, ProjectsService &projects, FileOpening &opening);

} // namespace ostrelle
