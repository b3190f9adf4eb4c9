#include "platform/x11/KeeperProcess.h"

#include <QFile>
#include <QSocketNotifier>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace ostrelle {

namespace {

void appendNumber(QByteArray &message, quint32 number)
{
    std::array<char, sizeof number> bytes{};
    std::memcpy(bytes.data(), &number, sizeof number); // both ends are of one machine
    message.append(bytes.data(), bytes.size());
}

/// What the keeper reads: the expected owner, the number of contents, then for each the length of its type names, the
/// length of its bytes, the names joined by line feeds, and the bytes.
QByteArray messageOf(quint32 expectedOwner, const QList<KeeperProcess::Content> &contents)
{
    QByteArray message;
    appendNumber(message, expectedOwner);
    appendNumber(message, static_cast<quint32>(contents.size()));
    for (const KeeperProcess::Content &content : contents) {
        const QByteArray types = content.types.join('\n');
        appendNumber(message, static_cast<quint32>(types.size()));
        appendNumber(message, static_cast<quint32>(content.bytes.size()));
        message += types;
        message += content.bytes;
    }
    return message;
}

} // namespace

KeeperProcess::KeeperProcess(const QString &executable, quint32 expectedOwner, const QList<Content> &contents)
    : m_message(messageOf(expectedOwner, contents))
{
    start(executable);
    if (m_pid < 0) {
        end();
        return;
    }
    m_writable = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Write);
    connect(m_writable.get(), &QSocketNotifier::activated, this, [this] { sendMore(); });
    m_readable = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_readable.get(), &QSocketNotifier::activated, this, [this] { receive(); });
}

KeeperProcess::~KeeperProcess()
{
    end();
    if (m_socket >= 0) {
        close(m_socket); // a keeper that has not got everything yet gives up
    }
    if (m_pid > 0) {
        waitpid(m_pid, nullptr, WNOHANG); // it has put itself into the background long ago
    }
}

void KeeperProcess::start(const QString &executable)
{
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return;
    }
    m_socket = ends[0];
    fcntl(m_socket, F_SETFL, fcntl(m_socket, F_GETFL) | O_NONBLOCK);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    QByteArray path = QFile::encodeName(executable);
    std::array<char *, 2> arguments{path.data(), nullptr};
    if (posix_spawn(&m_pid, path.constData(), &actions, nullptr, arguments.data(), environ) != 0) {
        m_pid = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
}

void KeeperProcess::sendMore()
{
    while (m_sent < m_message.size()) {
        const ssize_t sent = send(m_socket, m_message.constData() + m_sent,
                                  static_cast<std::size_t>(m_message.size() - m_sent), MSG_NOSIGNAL);
        if (sent < 0) {
            if (errno != EAGAIN && errno != EINTR) {
                end();
            }
            return;
        }
        m_sent += sent;
    }
    m_writable->setEnabled(false);
    shutdown(m_socket, SHUT_WR);
}

void KeeperProcess::receive()
{
    char answer = 0;
    m_hasTakenOver = recv(m_socket, &answer, 1, 0) == 1 && answer == '1';
    end();
}

void KeeperProcess::end()
{
    m_isOver = true;
    for (QSocketNotifier *notifier : {m_writable.get(), m_readable.get()}) {
        if (notifier) {
            notifier->setEnabled(false);
        }
    }
}

} // namespace ostrelle
