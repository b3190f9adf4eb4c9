#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ostrelle {

/// What a helper may still do once it is shut in. Everything else is refused: opening, making or changing files,
/// sockets, starting programs, new code in memory, other processes.
struct SandboxLimits
{
    std::size_t addressSpace = 0; ///< bytes
    unsigned cpuSeconds = 0;      ///< of the whole process; each file has less
    bool mayStartThreads = false;
    /// Every other descriptor but the first three is closed; with it those stay that are open, and may be waited for
    /// and spoken to.
    bool keepsConnections = false;
    /// Folders that stay readable, for fonts; only where the kernel can confine file access, else none.
    std::vector<std::string> readableFolders;
};

/// Closes every descriptor but the first three. False when the kernel cannot.
[[nodiscard]] bool closeOtherDescriptors();

/// Shuts the process in, for good: closes every descriptor but the first three, then limits, no new privileges,
/// namespaces and Landlock where the kernel has them, and the system-call filter. False when one of the parts that
/// every kernel has failed; the caller then ends. Before the first byte of a file is read, with one thread only.
/// Sanitizer builds leave the address-space limit and the filter out, which their runtime cannot live with.
[[nodiscard]] bool enterSandbox(const SandboxLimits &limits);

/// Lets the process use up to `seconds` more of CPU time, and one second of grace, within the limit that it was shut in
/// with.
void allowCpuTime(unsigned seconds);

} // namespace ostrelle
