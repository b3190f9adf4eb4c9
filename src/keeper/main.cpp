#include "keeper/ClipboardKeeper.h"
#include "keeper/KeptContents.h"

#include <fcntl.h>
#include <linux/close_range.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <optional>
#include <utility>

namespace {

/// What is kept must not get to the disk in a core file, not even through a handler that the kernel starts.
void leaveNoCore()
{
    const rlimit none{1, 1}; // unlike 0 it counts for such handlers, too
    setrlimit(RLIMIT_CORE, &none);
    prctl(PR_SET_DUMPABLE, 0);
}

/// Out of the session and terminal of the program that started it, with nothing of that program's open but the socket.
bool goIntoBackground()
{
    const pid_t child = fork();
    if (child != 0) {
        _exit(child > 0 ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    close_range(STDERR_FILENO + 1, ~0U, 0);
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0 || dup2(nowhere, STDERR_FILENO) < 0) {
        return false;
    }
    std::signal(SIGHUP, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    return setsid() >= 0 && chdir("/") == 0;
}

} // namespace

/// Keeps what is on the clipboard when the program that copied it ends, until something else is copied. The content
/// comes on standard input, a socket, on which "1" is the answer when the selection is taken.
int main()
{
    leaveNoCore();
    if (!goIntoBackground()) {
        return EXIT_FAILURE;
    }
    std::optional<ostrelle::KeptContents> kept = ostrelle::KeptContents::receive(STDIN_FILENO);
    if (!kept) {
        return EXIT_FAILURE;
    }
    ostrelle::ClipboardKeeper keeper(std::move(*kept));
    if (!keeper.take()) {
        return EXIT_FAILURE;
    }
    // Whoever waits no longer still wants its content kept.
    [[maybe_unused]] const ssize_t written = write(STDIN_FILENO, "1", 1);
    close(STDIN_FILENO);
    keeper.run();
    return EXIT_SUCCESS;
}
