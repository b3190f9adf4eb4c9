#include "foundation/CoreDumps.h"

#include <sys/resource.h>

namespace ostrelle {

void forbidCoreDumps()
{
    // Where dumps go through a pipe to another program, the kernel ignores every limit but 1, which it takes for
    // "none"; and a file of one byte is too short for it to begin with. Fails only where the limit is 0 for good.
    const rlimit none{1, 1};
    ::setrlimit(RLIMIT_CORE, &none);
}

} // namespace ostrelle
