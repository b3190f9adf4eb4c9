#pragma once

namespace ostrelle {

/// Lets blocks of memory of 4 MiB and more go back to the system as soon as they are freed. The C library else learns
/// from each large block to keep the next one, in every thread's own heap: after one copied photograph of 24 megapixels
/// 30 MB stayed for good. Smaller ones are the images of frames, which would cost page faults at every frame. To be
/// called first in main().
void giveBackLargeBlocks();

/// Gives back what lies free between blocks in use. For the end of something rare and large, a window for example: it
/// takes a millisecond, and what is needed again costs page faults.
void giveBackFreeBlocks();

} // namespace ostrelle
