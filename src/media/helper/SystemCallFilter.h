#pragma once

namespace ostrelle {

struct SystemCallRights
{
    bool mayStartThreads = false;
    bool mayOpenFiles = false;      ///< for reading
    bool mayUseConnections = false; ///< wait for the sockets that are open, and write to them
};

/// From here on only a short list of system calls works; the rest fails with EPERM, because libraries ask for many a
/// thing that they can do without. False when the kernel has no filters.
[[nodiscard]] bool filterSystemCalls(const SystemCallRights &rights);

} // namespace ostrelle
