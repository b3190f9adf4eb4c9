#include "media_client/KernelConfinement.h"

#include <cerrno>

#include <sched.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrelle {
namespace {

// LANDLOCK_CREATE_RULESET_VERSION, which older headers lack.
constexpr unsigned kAskForVersion = 1;

/// Only trying tells: several switches of several systems forbid it.
bool canLeaveNamespaces()
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(::unshare(CLONE_NEWUSER | CLONE_NEWNET | CLONE_NEWIPC) == 0 ? 0 : 1);
    int status = 0;
    pid_t ended = -1;
    do
        ended = child < 0 ? -1 : ::waitpid(child, &status, 0);
    while (ended < 0 && child > 0 && errno == EINTR);
    return ended == child && child > 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

KernelConfinement KernelConfinement::ofThisKernel()
{
    return {.hasCallFilter = ::prctl(PR_GET_SECCOMP, 0, 0, 0, 0) >= 0,
            .hasLandlock = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, kAskForVersion) > 0,
            .hasNamespaces = canLeaveNamespaces()};
}

} // namespace ostrelle
