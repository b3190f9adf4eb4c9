#pragma once

namespace ostrelle {

struct UpdateDeployment;

/// Whether the program was started only to check for updates once: --check-update [--json].
bool isUpdateCheck(int argc, char **argv);
/// Checks, prints what came of it and returns the exit status of the command `update check`. Needs no display, no lock
/// and no running program.
int checkForUpdateOnce(int argc, char **argv, const UpdateDeployment &deployment);

} // namespace ostrelle
