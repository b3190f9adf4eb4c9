#include "media_helper/Sandbox.h"

#include "media_helper/Landlock.h"
#include "media_helper/SystemCallFilter.h"

#include <linux/capability.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <ctime>

namespace ostrelle {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

bool limit(__rlimit_resource resource, rlim_t value)
{
    const rlimit both{value, value};
    return ::setrlimit(resource, &both) == 0;
}

bool setLimits(const SandboxLimits &limits)
{
    constexpr rlim_t kOpenFiles = 64; // fonts; the light helper has no way to open any
    return limit(RLIMIT_CORE, 0) && limit(RLIMIT_FSIZE, 0) && limit(RLIMIT_NOFILE, kOpenFiles) &&
           limit(RLIMIT_CPU, limits.cpuSeconds) && (kIsSanitized || limit(RLIMIT_AS, limits.addressSpace));
}

/// A user of its own without rights, no network, no shared memory with others. Many systems do not allow it, and all
/// that it forbids is forbidden by the rest as well.
void leaveNamespaces()
{
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWIPC) != 0)
        return;
    // In its own user namespace it would have every capability.
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const std::array<__user_cap_data_struct, 2> none{};
    ::syscall(SYS_capset, &header, none.data());
}

} // namespace

bool closeOtherDescriptors()
{
    return ::close_range(3, ~0U, 0) == 0;
}

bool enterSandbox(const SandboxLimits &limits)
{
    if ((!limits.keepsConnections && !closeOtherDescriptors()) || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0)
        return false;
    leaveNamespaces();
    const bool isConfined = confineFileAccess(limits.readableFolders);
    if (!setLimits(limits))
        return false;
    if (kIsSanitized)
        return true;
    return filterSystemCalls({.mayStartThreads = limits.mayStartThreads,
                              .mayOpenFiles = isConfined && !limits.readableFolders.empty(),
                              .mayUseConnections = limits.keepsConnections});
}

void allowCpuTime(unsigned seconds)
{
    rlimit limit{};
    timespec used{};
    if (::getrlimit(RLIMIT_CPU, &limit) != 0 || ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used) != 0)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, static_cast<rlim_t>(used.tv_sec) + seconds + 1);
    ::setrlimit(RLIMIT_CPU, &limit);
}

} // namespace ostrelle
