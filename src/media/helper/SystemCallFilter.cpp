#include "media_helper/SystemCallFilter.h"

#include <fcntl.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>

#include <cerrno>
#include <memory>

namespace ostrelle {
namespace {

struct Release
{
    void operator()(void *filter) const { seccomp_release(filter); }
};
using Filter = std::unique_ptr<void, Release>;

/// Memory, time, the socket and the descriptors that came over it.
constexpr int kAlways[] = {
    SCMP_SYS(read),         SCMP_SYS(pread64),         SCMP_SYS(readv),   SCMP_SYS(lseek),
    SCMP_SYS(close),        SCMP_SYS(recvmsg),         SCMP_SYS(sendmsg), SCMP_SYS(write),
    SCMP_SYS(writev),       SCMP_SYS(fstat),           SCMP_SYS(munmap),  SCMP_SYS(mremap),
    SCMP_SYS(brk),          SCMP_SYS(madvise),         SCMP_SYS(futex),   SCMP_SYS(clock_gettime),
    SCMP_SYS(gettimeofday), SCMP_SYS(getrandom),       SCMP_SYS(exit),    SCMP_SYS(exit_group),
    SCMP_SYS(rt_sigreturn), SCMP_SYS(rt_sigprocmask),  SCMP_SYS(getpid),  SCMP_SYS(gettid),
    SCMP_SYS(sched_yield),  SCMP_SYS(restart_syscall),
};

/// What the font and the drawing libraries ask about themselves and about the files that they may read.
constexpr int kForFiles[] = {
    SCMP_SYS(newfstatat), SCMP_SYS(stat),       SCMP_SYS(lstat),    SCMP_SYS(statx),      SCMP_SYS(access),
    SCMP_SYS(faccessat),  SCMP_SYS(faccessat2), SCMP_SYS(readlink), SCMP_SYS(readlinkat), SCMP_SYS(getdents64),
    SCMP_SYS(fstatfs),    SCMP_SYS(statfs),     SCMP_SYS(getcwd),   SCMP_SYS(getuid),     SCMP_SYS(geteuid),
    SCMP_SYS(getgid),     SCMP_SYS(getegid),    SCMP_SYS(uname),    SCMP_SYS(sysinfo),    SCMP_SYS(fadvise64),
};

constexpr int kForThreads[] = {
    SCMP_SYS(set_robust_list),
    SCMP_SYS(rseq),
    SCMP_SYS(sched_getaffinity),
    SCMP_SYS(clock_nanosleep),
};

class Rules
{
public:
    explicit Rules(scmp_filter_ctx filter)
        : m_filter(filter)
    {
    }

    template <typename... Conditions>
    void allow(int call, Conditions... conditions)
    {
        // A call that this machine does not have needs no rule.
        const int result = seccomp_rule_add(m_filter, SCMP_ACT_ALLOW, call, sizeof...(conditions), conditions...);
        m_isComplete = m_isComplete && (result == 0 || result == -EDOM || result == -EINVAL);
    }
    template <std::size_t count>
    void allowAll(const int (&calls)[count])
    {
        for (const int call : calls)
            allow(call);
    }
    bool isComplete() const { return m_isComplete; }

private:
    scmp_filter_ctx m_filter;
    bool m_isComplete = true;
};

scmp_arg_cmp masked(unsigned argument, scmp_datum_t mask, scmp_datum_t value)
{
    return {argument, SCMP_CMP_MASKED_EQ, mask, value};
}

void addThreads(Rules &rules, scmp_filter_ctx filter)
{
    rules.allowAll(kForThreads);
    // A thread shares everything with its process; a process of its own is refused.
    constexpr scmp_datum_t kThread = CLONE_VM | CLONE_THREAD | CLONE_SIGHAND;
    rules.allow(SCMP_SYS(prctl), scmp_arg_cmp{0, SCMP_CMP_EQ, PR_SET_NAME, 0});
    rules.allow(SCMP_SYS(clone), masked(0, kThread, kThread));
    // Its arguments lie in memory, where a filter cannot look; the C library then takes the old call.
    seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0);
}

void addConnections(Rules &rules)
{
    rules.allow(SCMP_SYS(ppoll));
    // To the other end only, not to an address.
    rules.allow(SCMP_SYS(sendto), scmp_arg_cmp{4, SCMP_CMP_EQ, 0, 0});
}

} // namespace

bool filterSystemCalls(const SystemCallRights &rights)
{
    const Filter filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
    if (!filter)
        return false;
    Rules rules(filter.get());
    rules.allowAll(kAlways);
    // No new code.
    rules.allow(SCMP_SYS(mmap), masked(2, PROT_EXEC, 0));
    rules.allow(SCMP_SYS(mprotect), masked(2, PROT_EXEC, 0));
    // Its own CPU time, which each file is given anew below the limit of the process.
    rules.allow(SCMP_SYS(prlimit64), scmp_arg_cmp{0, SCMP_CMP_EQ, 0, 0}, scmp_arg_cmp{1, SCMP_CMP_EQ, RLIMIT_CPU, 0});
    rules.allow(SCMP_SYS(fcntl), scmp_arg_cmp{1, SCMP_CMP_EQ, F_GETFD, 0});
    rules.allow(SCMP_SYS(fcntl), scmp_arg_cmp{1, SCMP_CMP_EQ, F_GETFL, 0});
    rules.allow(SCMP_SYS(fcntl), scmp_arg_cmp{1, SCMP_CMP_EQ, F_SETFD, 0});
    rules.allow(SCMP_SYS(fcntl), scmp_arg_cmp{1, SCMP_CMP_EQ, F_DUPFD_CLOEXEC, 0});
    if (rights.mayOpenFiles) {
        rules.allowAll(kForFiles);
        constexpr scmp_datum_t kWriting = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC;
        rules.allow(SCMP_SYS(openat), masked(2, kWriting, 0));
        rules.allow(SCMP_SYS(open), masked(1, kWriting, 0));
    }
    if (rights.mayStartThreads)
        addThreads(rules, filter.get());
    if (rights.mayUseConnections)
        addConnections(rules);
    return rules.isComplete() && seccomp_load(filter.get()) == 0;
}

} // namespace ostrelle
