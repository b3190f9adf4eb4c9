#include "foundation/UnixSocket.h"

#include "foundation/AppPaths.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace ostrelle::UnixSocket {

namespace {

using std::chrono::milliseconds;

std::optional<sockaddr_un> addressOf(const QString &path)
{
    const QByteArray bytes = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(bytes.size()) >= sizeof address.sun_path)
        return std::nullopt;
    std::memcpy(address.sun_path, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return address;
}

const sockaddr *generic(const sockaddr_un &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

milliseconds monotonicNow()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return std::chrono::duration_cast<milliseconds>(std::chrono::seconds(time.tv_sec) +
                                                    std::chrono::nanoseconds(time.tv_nsec));
}

/// Waits for `events`; false at the deadline.
bool waitFor(int descriptor, short events, milliseconds until)
{
    for (;;) {
        const milliseconds left = std::max(until - monotonicNow(), milliseconds(0));
        pollfd poller{descriptor, events, 0};
        const int ready = ::poll(&poller, 1, static_cast<int>(left.count()));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

} // namespace

FileDescriptor connectTo(const QString &path)
{
    const auto address = addressOf(path);
    if (!address)
        return {};
    FileDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!descriptor || ::connect(descriptor.get(), generic(*address), sizeof *address) != 0)
        return {};
    return descriptor;
}

FileDescriptor listenAt(const QString &path)
{
    const auto address = addressOf(path);
    if (!address || !AppPaths::ensurePrivateFolder(QFileInfo(path).path()))
        return {};
    const QByteArray name = QFile::encodeName(path);
    ::unlink(name.constData());
    FileDescriptor descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    // The socket file is created by bind() with the descriptor's own mode.
    if (!descriptor || ::fchmod(descriptor.get(), 0600) != 0 ||
        ::bind(descriptor.get(), generic(*address), sizeof *address) != 0 || ::chmod(name.constData(), 0600) != 0 ||
        ::listen(descriptor.get(), 16) != 0)
        return {};
    return descriptor;
}

bool isSameUser(int descriptor)
{
    ucred peer{};
    socklen_t size = sizeof peer;
    return ::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == ::getuid();
}

bool sendLine(int descriptor, const QByteArray &line, milliseconds deadline)
{
    const milliseconds until = monotonicNow() + deadline;
    const QByteArray bytes = line + '\n';
    qsizetype sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = ::send(descriptor, bytes.constData() + sent,
                                     static_cast<std::size_t>(bytes.size() - sent), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count > 0)
            sent += count;
        else if (count < 0 && errno == EAGAIN) {
            if (!waitFor(descriptor, POLLOUT, until))
                return false;
        } else if (count < 0 && errno != EINTR)
            return false;
    }
    return true;
}

std::optional<QByteArray> receiveLine(int descriptor, milliseconds deadline, qsizetype cap)
{
    const milliseconds until = monotonicNow() + deadline;
    QByteArray line;
    char buffer[4096];
    while (line.size() <= cap) {
        const ssize_t count = ::recv(descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        if (count > 0) {
            line.append(buffer, count);
            const qsizetype end = line.indexOf('\n', line.size() - count);
            if (end >= 0)
                return line.left(end);
        } else if (count == 0) {
            return std::nullopt;
        } else if (errno == EAGAIN) {
            if (!waitFor(descriptor, POLLIN, until))
                return std::nullopt;
        } else if (errno != EINTR) {
            return std::nullopt;
        }
    }
    return std::nullopt;
}

bool waitForEnd(int descriptor, milliseconds deadline)
{
    const milliseconds until = monotonicNow() + deadline;
    char buffer[256];
    for (;;) {
        if (!waitFor(descriptor, POLLIN, until))
            return false;
        const ssize_t count = ::recv(descriptor, buffer, sizeof buffer, MSG_DONTWAIT);
        if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR))
            return true;
    }
}

} // namespace ostrelle::UnixSocket
