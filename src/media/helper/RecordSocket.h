#pragma once

#include "foundation/FileDescriptor.h"

#include <cstddef>
#include <sys/types.h>

namespace ostrelle {

/// The socket to the program, which every helper has as its standard input.
inline constexpr int kProgramSocket = 0;

/// Receives up to `size` bytes and the descriptor that came along, if any. Returns as recvmsg() does.
ssize_t receiveRecord(int socket, void *record, std::size_t size, FileDescriptor &file);
/// Sends all of it, with a descriptor if `file` is one; false when the other end is gone.
bool sendRecord(int socket, const void *bytes, std::size_t size, int file = -1);

} // namespace ostrelle
