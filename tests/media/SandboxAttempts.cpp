#include "SandboxAttempts.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ostrelle {
namespace {

/// 0 when it was possible.
int errorOf(long result)
{
    return result >= 0 ? 0 : errno;
}

int forks()
{
    const pid_t child = fork();
    if (child == 0)
        _exit(0);
    return errorOf(child);
}

int executes()
{
    char name[] = "/bin/true";
    char *arguments[] = {name, nullptr};
    return errorOf(execv(name, arguments));
}

int mapsCode()
{
    void *code = mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return code == MAP_FAILED ? errno : 0;
}

sockaddr_un busAddress()
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "/run/dbus/system_bus_socket");
    return address;
}

int connects()
{
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    if (descriptor < 0)
        return errno;
    const sockaddr_un address = busAddress();
    return errorOf(connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address));
}

int sendsToAddress()
{
    const sockaddr_un address = busAddress();
    return errorOf(sendto(STDIN_FILENO, "", 1, 0, reinterpret_cast<const sockaddr *>(&address), sizeof address));
}

int raisesMemory()
{
    const rlimit more{RLIM_INFINITY, RLIM_INFINITY};
    return errorOf(setrlimit(RLIMIT_AS, &more));
}

} // namespace

AttemptErrors attemptEverything()
{
    return {
        errorOf(open("/etc/passwd", O_RDONLY)),
        errorOf(open("/proc/self/maps", O_RDONLY)),
        errorOf(open("/tmp/ostrelle-probe", O_WRONLY | O_CREAT, 0600)),
        errorOf(open("/tmp", O_TMPFILE | O_RDWR, 0600)),
        errorOf(mkdir("/tmp/ostrelle-probe-folder", 0700)),
        errorOf(unlink("/tmp/ostrelle-probe-victim")),
        errorOf(rename("/tmp/ostrelle-probe-victim", "/tmp/ostrelle-probe-other")),
        errorOf(socket(AF_INET, SOCK_STREAM, 0)),
        connects(),
        forks(),
        executes(),
        mapsCode(),
        errorOf(syscall(SYS_memfd_create, "probe", 0)),
        errorOf(kill(getppid(), 0)),
        errorOf(ptrace(PTRACE_ATTACH, getppid(), nullptr, nullptr)),
        raisesMemory(),
        sendsToAddress(),
    };
}

} // namespace ostrelle
