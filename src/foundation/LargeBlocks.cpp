#include "foundation/LargeBlocks.h"

#include <malloc.h>

namespace ostrelle {
namespace {

constexpr int kLarge = 4 * 1024 * 1024;

} // namespace

void giveBackLargeBlocks()
{
    ::mallopt(M_MMAP_THRESHOLD, kLarge);
    // At its own much lower value, the end of the heap would come and go with every frame.
    ::mallopt(M_TRIM_THRESHOLD, kLarge);
}

void giveBackFreeBlocks()
{
    ::malloc_trim(0);
}

} // namespace ostrelle
