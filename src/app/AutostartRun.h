#pragma once

namespace ostrelle {

/// Whether the program was started only to tell or change whether it starts with the session: --autostart=VERB.
bool isAutostartRun(int argc, char **argv);
/// Does what the command `autostart` does and returns its exit status. Needs no display, no lock and no running
/// program.
int runAutostartOnce(int argc, char **argv);

} // namespace ostrelle
