#include "media_client/HelperProcess.h"

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
#include <thread>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

/// What is read at once: large enough to be quick, small enough that no frame waits for it.
constexpr qsizetype kReadAtOnce = 256 * 1024;

/// Two busy helpers on two cores at the usual priority were measured to hold a frame up for 20 to 100 ms.
constexpr int kBackgroundNiceness = 10;

/// The program's environment may hold secrets; a helper needs to find fonts.
std::vector<QByteArray> helperEnvironment()
{
    std::vector<QByteArray> environment;
    for (const char *name : {"HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "LANG", "LC_ALL", "LC_CTYPE",
                             "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS"}) {
        if (const char *value = std::getenv(name))
            environment.push_back(QByteArray(name) + '=' + value);
    }
    return environment;
}

class SpawnPlan
{
public:
    explicit SpawnPlan(int socket)
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
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnPlan()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;

    pid_t spawn(const QString &executable)
    {
        QByteArray path = QFile::encodeName(executable);
        std::array<char *, 2> arguments{path.data(), nullptr};
        std::vector<QByteArray> environment = helperEnvironment();
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

/// What the helper says fits what was asked and itself.
bool isSound(const HelperRequest &request, const HelperAnswer &answer)
{
    if (answer.magic != kHelperMagic || answer.id != request.id || answer.byteSize > request.outputLimit)
        return false;
    if (answer.status != HelperStatus::Done)
        return answer.byteSize == 0 && answer.status <= HelperStatus::OutOfMemory;
    if (request.command != HelperCommand::Thumbnail)
        return answer.byteSize > 0;
    const auto fits = [](std::uint32_t side, std::uint32_t most) { return side >= 1 && side <= most; };
    if (!fits(answer.width, request.side) || !fits(answer.height, request.side))
        return false;
    const bool hasCache = answer.cacheWidth > 0 || answer.cacheHeight > 0;
    if (hasCache && (!fits(answer.cacheWidth, request.cacheSide) || !fits(answer.cacheHeight, request.cacheSide)))
        return false;
    // No side is above 1024, so this cannot wrap.
    return answer.byteSize == 4 * (answer.width * answer.height + answer.cacheWidth * answer.cacheHeight);
}

} // namespace

/// The process, from the wish for it to its end. Starting it holds the thread up until the system has loaded it, which
/// was measured to take from 1 to more than 100 ms, so a thread of its own does.
class HelperProcess::Start
{
public:
    void run(const QString &executable, HelperPriority priority, FileDescriptor socket)
    {
        // Of this thread only, as the kernel has it; the process inherits it.
        if (priority == HelperPriority::Background)
            ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), kBackgroundNiceness);
        const pid_t pid = SpawnPlan(socket.get()).spawn(executable);
        const std::lock_guard lock(m_mutex);
        m_pid = pid;
        if (m_isUnwanted)
            killLocked();
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
    bool m_isUnwanted = false;
};

HelperProcess::HelperProcess(const QString &executable, HelperPriority priority, QObject *parent)
    : QObject(parent)
    , m_start(std::make_shared<Start>())
{
    start(executable, priority);
}

HelperProcess::~HelperProcess()
{
    kill();
    m_start->reap();
}

void HelperProcess::start(const QString &executable, HelperPriority priority)
{
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0)
        return;
    m_socket.reset(ends[0]);
    ::fcntl(m_socket.get(), F_SETFL, ::fcntl(m_socket.get(), F_GETFL) | O_NONBLOCK);
    m_readable = std::make_unique<QSocketNotifier>(m_socket.get(), QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &HelperProcess::receive);
    // One that does not start leaves a closed socket behind, as one that dies.
    std::thread([start = m_start, executable, priority, other = FileDescriptor(ends[1])]() mutable {
        start->run(executable, priority, std::move(other));
    }).detach();
}

bool HelperProcess::ask(const HelperRequest &request, int file)
{
    m_request = request;
    iovec part{&m_request, sizeof m_request};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr *header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &file, sizeof file);
    m_received.clear();
    m_hasHeader = false;
    m_isBusy = ::sendmsg(m_socket.get(), &message, MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof m_request);
    return m_isBusy;
}

void HelperProcess::receive()
{
    const qsizetype wanted =
        (m_hasHeader ? qsizetype(m_answer.byteSize) : qsizetype(sizeof m_answer)) - m_received.size();
    const qsizetype size = std::min(wanted, kReadAtOnce);
    const qsizetype before = m_received.size();
    m_received.resize(before + size);
    const ssize_t count = ::recv(m_socket.get(), m_received.data() + before, std::size_t(size), 0);
    m_received.truncate(before + std::max<ssize_t>(count, 0));
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0 || !m_isBusy || (!m_hasHeader && !takeHeader())) {
        m_readable->setEnabled(false);
        Q_EMIT lost();
        return;
    }
    if (!m_hasHeader || m_received.size() < qsizetype(m_answer.byteSize))
        return;
    m_isBusy = false;
    const QByteArray payload = std::move(m_received);
    m_received = {};
    Q_EMIT answered(m_answer, payload);
}

bool HelperProcess::takeHeader()
{
    if (m_received.size() < qsizetype(sizeof m_answer))
        return true;
    std::memcpy(&m_answer, m_received.constData(), sizeof m_answer);
    m_hasHeader = true;
    m_received.clear();
    if (!isSound(m_request, m_answer))
        return false;
    m_received.reserve(qsizetype(m_answer.byteSize));
    return true;
}

void HelperProcess::kill()
{
    // A notifier may be the caller, so it is not deleted here.
    if (m_readable)
        m_readable->setEnabled(false);
    m_socket.reset();
    m_end = m_start->kill();
}

void HelperProcess::retire()
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
