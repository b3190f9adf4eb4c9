#pragma once

namespace ostrelle {

/// Lets nothing of this process get to the disk in a core dump. To be called first in main(). (Not PR_SET_DUMPABLE: it
/// would lock the program out of the portals.)
void forbidCoreDumps();

} // namespace ostrelle
