#include "media_client/HelperConnection.h"

#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

/// Two busy helpers on two cores at the usual priority were measured to hold a frame up for 20 to 100 ms.
constexpr int kBackgroundNiceness = 10;

/// Where the kernel lets sessions take turns (sched(7), autogroup), niceness counts within a session only. Beside ten
/// others that wanted to compute, a thread that wakes 110 times a second was up to 66 ms late with a nice helper in its
/// session; with one in a session of its own it was no later than without any.
void makeSessionNice(pid_t pid)
{
    const FileDescriptor file(::open(("/proc/" + std::to_string(pid) + "/autogroup").c_str(), O_WRONLY | O_CLOEXEC));
    const std::string niceness = std::to_string(kBackgroundNiceness);
    // Many kernels have no such file.
    if (file)
        (void)!::write(file.get(), niceness.data(), niceness.size());
}

/// The program's environment may hold secrets; a helper needs to find fonts.
constexpr std::array kVariables{"HOME",   "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "LANG",
                                "LC_ALL", "LC_CTYPE",       "ASAN_OPTIONS",    "UBSAN_OPTIONS", "LSAN_OPTIONS"};

using Environment = std::vector<QByteArray>;

void addVariables(Environment &environment, std::span<const char *const> names)
{
    for (const char *name : names) {
        if (const char *value = std::getenv(name))
            environment.push_back(QByteArray(name) + '=' + value);
    }
}

class SpawnPlan
{
public:
    SpawnPlan(int socket, HelperPriority priority)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, socket, STDIN_FILENO);
        // What a library has to say about a broken file is nobody's business.
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawnattr_init(&m_attributes);
        sigset_t all;
        sigemptyset(&all);
        posix_spawnattr_setsigmask(&m_attributes, &all);
        sigfillset(&all);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        // What a helper in the background computes is not to be taken off the program's own turn.
        const short session = priority == HelperPriority::Background ? POSIX_SPAWN_SETSID : 0;
        posix_spawnattr_setflags(&m_attributes,
                                 static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | session));
    }
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;

    pid_t spawn(const QString &executable, Environment environment)
    {
        QByteArray path = QFile::encodeName(executable);
        std::array<char *, 2> arguments{path.data(), nullptr};
        std::vector<char *> variables;
        variables.reserve(environment.size() + 1);
        for (QByteArray &variable : environment)
            variables.push_back(variable.data());
        variables.push_back(nullptr);
        pid_t pid = -1;
        const int result =
            posix_spawn(&pid, path.constData(), &m_actions, &m_attributes, arguments.data(), variables.data());
        return result == 0 ? pid : -1;
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

} // namespace

/// The process, from the wish for it to its end. Starting it holds the thread up until the system has loaded it, which
/// was measured to take from 1 to more than 100 ms, so a thread of its own does.
class HelperConnection::Start
{
public:
    void run(const QString &executable, HelperPriority priority, Environment environment, FileDescriptor socket)
    {
        // Of this thread only, as the kernel has it; the process inherits it.
        if (priority == HelperPriority::Background)
            ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kBackgroundNiceness);
        const pid_t pid = SpawnPlan(socket.get(), priority).spawn(executable, std::move(environment));
        if (priority == HelperPriority::Background && pid > 0)
            makeSessionNice(pid);
        const std::lock_guard lock(m_mutex);
        m_pid = pid;
        m_hasFailed = pid <= 0;
        if (m_isUnwanted)
            killLocked();
    }

    bool hasFailed()
    {
        const std::lock_guard lock(m_mutex);
        return m_hasFailed;
    }

    /// Kills it, now or as soon as it is there. Returns a descriptor that is readable when it has ended, which may be
    /// none.
    FileDescriptor kill()
    {
        const std::lock_guard lock(m_mutex);
        m_isUnwanted = true;
        if (m_pid <= 0)
            return {};
        ::kill(m_pid, SIGKILL);
        return FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, m_pid, 0)));
    }

    /// After kill().
    void reap()
    {
        const std::lock_guard lock(m_mutex);
        if (m_pid > 0)
            killLocked();
    }

private:
    void killLocked()
    {
        if (m_pid > 0) {
            ::kill(m_pid, SIGKILL);
            ::waitpid(m_pid, nullptr, 0); // over in a moment
        }
        m_pid = -1;
    }

    /// Guards the rest.
    std::mutex m_mutex;
    pid_t m_pid = -1;
    bool m_hasFailed = false;
    bool m_isUnwanted = false;
};

struct HelperConnection::Ahead
{
    QString executable; ///< empty: none is waiting
    std::shared_ptr<Start> start;
    FileDescriptor socket;
};

HelperConnection::Ahead &HelperConnection::ahead()
{
    static Ahead waiting;
    return waiting;
}

void HelperConnection::startAhead(const QString &executable)
{
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    ahead() = {executable, std::make_shared<Start>(), FileDescriptor(ends[0])};
    Environment environment;
    addVariables(environment, kVariables);
    ahead().start->run(executable, HelperPriority::Usual, std::move(environment), FileDescriptor(ends[1]));
}

HelperConnection::HelperConnection(const QString &executable, HelperPriority priority,
                                   std::span<const char *const> variables, QObject *parent)
    : QObject(parent)
{
    std::array<int, 2> ends{-1, -1};
    const bool isAhead =
        ahead().executable == executable && priority == HelperPriority::Usual && variables.empty() && ahead().start;
    if (isAhead) {
        Ahead taken = std::exchange(ahead(), Ahead());
        m_start = std::move(taken.start);
        m_socket = std::move(taken.socket);
    } else {
        m_start = std::make_shared<Start>();
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
            return;
        m_socket.reset(ends[0]);
    }
    ::fcntl(m_socket.get(), F_SETFL, ::fcntl(m_socket.get(), F_GETFL) | O_NONBLOCK);
    m_readable = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &HelperConnection::readable);
    if (isAhead)
        return;
    Environment environment;
    addVariables(environment, kVariables);
    addVariables(environment, variables);
    // One that does not start leaves a closed socket behind, as one that dies.
    std::thread([start = m_start, executable, priority, environment = std::move(environment),
                 other = FileDescriptor(ends[1])]() mutable {
        start->run(executable, priority, std::move(environment), std::move(other));
    }).detach();
}

HelperConnection::~HelperConnection()
{
    kill();
    m_start->reap();
}

bool HelperConnection::send(const void *record, std::size_t size, int file)
{
    iovec part{const_cast<void *>(record), size};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (file >= 0) {
        message.msg_control = control.data();
        message.msg_controllen = control.size();
        cmsghdr *header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(sizeof(int));
        std::memcpy(CMSG_DATA(header), &file, sizeof file);
    }
    return ::sendmsg(m_socket.get(), &message, MSG_NOSIGNAL) == static_cast<ssize_t>(size);
}

bool HelperConnection::receive(QByteArray &received, qsizetype most)
{
    const qsizetype before = received.size();
    received.resize(before + most);
    const ssize_t count = ::recv(m_socket.get(), received.data() + before, std::size_t(most), 0);
    received.truncate(before + std::max<ssize_t>(count, 0));
    if (count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR)))
        return true;
    stopReading();
    return false;
}

bool HelperConnection::hasFailedToStart() const
{
    return m_start->hasFailed();
}

void HelperConnection::stopReading()
{
    // A notifier may be the caller, so it is not deleted here.
    if (m_readable)
        m_readable->setEnabled(false);
}

void HelperConnection::kill()
{
    stopReading();
    m_socket.reset();
    m_end = m_start->kill();
}

void HelperConnection::retire()
{
    disconnect();
    kill();
    if (!m_end) {
        deleteLater();
        return;
    }
    m_ended = std::make_unique<QSocketNotifier>(m_end.get(), QSocketNotifier::Read);
    connect(m_ended.get(), &QSocketNotifier::activated, this, [this] {
        m_ended->setEnabled(false);
        m_start->reap();
        deleteLater();
    });
}

} // namespace ostrelle
