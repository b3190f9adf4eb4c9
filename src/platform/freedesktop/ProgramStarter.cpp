#include "platform/freedesktop/ProgramStarter.h"

#include "foundation/FileDescriptor.h"
#include "foundation/MakeChild.h"

#include <QFile>
#include <QSocketNotifier>

#include <csignal>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>

extern "C" {
#include <sys/pidfd.h> // glibc 2.36 forgot to say so itself
}

namespace ostrelle {

namespace {

/// As the kernel keeps it since the start. What was set later is about this program alone, such as its display backend.
QByteArrayList environmentAtStart()
{
    QFile file(QStringLiteral("/proc/self/environ"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split('\0') : QByteArrayList();
}

QByteArrayList environmentWith(const QByteArrayList &variables)
{
    QByteArrayList environment = environmentAtStart();
    environment.removeAll(QByteArray());
    for (const QByteArray &variable : variables) {
        const QByteArray name = variable.first(variable.indexOf('=') + 1);
        environment.removeIf([&name](const QByteArray &other) { return other.startsWith(name); });
        if (variable.size() > name.size()) {
            environment << variable;
        }
    }
    return environment;
}

std::vector<char *> pointersTo(QByteArrayList &strings)
{
    std::vector<char *> pointers;
    for (QByteArray &string : strings) {
        pointers.push_back(string.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// The process, as a descriptor that becomes readable when it ends; none when it could not be started.
FileDescriptor spawn(QByteArrayList command, QByteArrayList environment)
{
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&files, STDERR_FILENO + 1);

    // Ignored signals and blocked ones would be inherited.
    sigset_t set;
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigemptyset(&set);
    posix_spawnattr_setsigmask(&attributes, &set);
    sigfillset(&set);
    posix_spawnattr_setsigdefault(&attributes, &set);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    pid_t process = -1;
    const int error = posix_spawnp(&process, command.constFirst().constData(), &files, &attributes,
                                   pointersTo(command).data(), pointersTo(environment).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&files);
    return error == 0 ? FileDescriptor(pidfd_open(process, 0)) : FileDescriptor();
}

} // namespace

void ProgramStarter::start(const QByteArrayList &command, const QByteArrayList &variables,
                           std::function<void(std::optional<int>)> ended)
{
    // The caller would wait until the program is read from its disk, and for every folder in PATH.
    m_queue.post([this, command, variables, ended = std::move(ended)] {
        const int process = spawn(command, environmentWith(variables)).release();
        QMetaObject::invokeMethod(
            this, [this, process, ended] { watch(process, ended); }, Qt::QueuedConnection);
    });
}

void ProgramStarter::watch(int processDescriptor, std::function<void(std::optional<int>)> ended)
{
    if (processDescriptor < 0) {
        ended(std::nullopt);
        return;
    }
    auto &notifier = makeChild<QSocketNotifier>(this, processDescriptor, QSocketNotifier::Read);
    connect(&notifier, &QSocketNotifier::activated, this, [&notifier, processDescriptor, ended = std::move(ended)] {
        notifier.setEnabled(false);
        notifier.deleteLater();
        siginfo_t result = {};
        waitid(P_PIDFD, static_cast<id_t>(processDescriptor), &result, WEXITED | WNOHANG);
        ended(result.si_code == CLD_EXITED ? result.si_status : 128 + result.si_status);
    });
    connect(&notifier, &QObject::destroyed, [processDescriptor] { FileDescriptor(processDescriptor).reset(); });
}

} // namespace ostrelle
