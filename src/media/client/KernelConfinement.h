#pragma once

namespace ostrelle {

/// What this kernel has to shut the media helpers in.
struct KernelConfinement
{
    bool hasCallFilter = false; ///< filters of system calls; without them no helper runs
    bool hasLandlock = false;   ///< confines access to files
    bool hasNamespaces = false; ///< a process without rights may have a user and a network of its own

    /// Asks the kernel. Any thread; starts a process for a moment.
    static KernelConfinement ofThisKernel();
};

} // namespace ostrelle
