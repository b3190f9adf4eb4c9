#include "app/ControlServer.h"

#include "app/RequestRouter.h"
#include "foundation/UnixSocket.h"
#include "foundation/Unwritable.h"

#include <QFile>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>
#include <cerrno>

#include <sys/socket.h>

namespace ostrelle {

namespace {

Q_LOGGING_CATEGORY(lcControl, "ostrelle.app", QtWarningMsg)

// Requests are short; a peer that sends more without a line feed is no command of ours.
constexpr qsizetype kRequestCap = 1024 * 1024;

} // namespace

struct ControlServer::Client
{
    FileDescriptor descriptor;
    std::unique_ptr<QSocketNotifier> readable;
    std::unique_ptr<QSocketNotifier> writable;
    quint64 number = 0;
    QByteArray input;
    QByteArray output;
    bool isAwaitingAnswer = false; ///< its next request waits, so that answers come in the order of the requests
    bool isAsking = false;         ///< within the call of the handler
};

ControlServer::ControlServer(RequestRouter &router, QObject *parent)
    : QObject(parent)
    , m_router(router)
{
}

ControlServer::~ControlServer()
{
    stopListening();
}

void ControlServer::stopListening()
{
    m_notifier.reset();
    if (m_listener)
        ::unlink(QFile::encodeName(m_path).constData());
    m_listener.reset();
}

bool ControlServer::listen(const QString &path)
{
    m_listener = UnixSocket::listenAt(path);
    if (!m_listener) {
        const QString reason = qt_error_string(errno);
        if (!reportUnwritable(QFileInfo(path).path()))
            qCWarning(lcControl, "Cannot listen for commands: %s", qUtf8Printable(reason));
        return false;
    }
    m_path = path;
    m_notifier = std::make_unique<QSocketNotifier>(m_listener.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ControlServer::accept);
    return true;
}

void ControlServer::accept()
{
    for (;;) {
        FileDescriptor descriptor(::accept4(m_listener.get(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
        if (!descriptor)
            return;
        if (!UnixSocket::isSameUser(descriptor.get()))
            continue;
        auto client = std::make_unique<Client>();
        client->readable = std::make_unique<QSocketNotifier>(descriptor.get(), QSocketNotifier::Read);
        client->writable = std::make_unique<QSocketNotifier>(descriptor.get(), QSocketNotifier::Write);
        client->writable->setEnabled(false);
        client->descriptor = std::move(descriptor);
        client->number = ++m_accepted;
        Client &added = *m_clients.emplace_back(std::move(client));
        connect(added.readable.get(), &QSocketNotifier::activated, this, [this, &added] { receive(added); });
        connect(added.writable.get(), &QSocketNotifier::activated, this, [this, &added] { send(added); });
    }
}

void ControlServer::receive(Client &client)
{
    char buffer[4096];
    const ssize_t count = ::recv(client.descriptor.get(), buffer, sizeof buffer, 0);
    if (count < 0 && (errno == EAGAIN || errno == EINTR))
        return;
    if (count <= 0 || client.input.size() + count > kRequestCap) {
        drop(client);
        return;
    }
    client.input.append(buffer, count);
    answerWaiting(client);
}

void ControlServer::answerWaiting(Client &client)
{
    for (qsizetype end = client.input.indexOf('\n'); end >= 0 && !client.isAwaitingAnswer;
         end = client.input.indexOf('\n')) {
        const QByteArray request = client.input.left(end);
        client.input.remove(0, end + 1);
        client.isAwaitingAnswer = client.isAsking = true;
        m_router.answer(request, [server = QPointer(this), number = client.number](const QByteArray &line) {
            if (server)
                server->answered(number, line);
        });
        client.isAsking = false;
    }
    if (!client.output.isEmpty())
        send(client);
}

void ControlServer::answered(quint64 number, const QByteArray &line)
{
    const auto found = std::find_if(m_clients.begin(), m_clients.end(),
                                    [number](const auto &candidate) { return candidate->number == number; });
    if (found == m_clients.end())
        return; // it did not wait
    Client &client = **found;
    client.isAwaitingAnswer = false;
    client.output += line + '\n';
    if (!client.isAsking)
        answerWaiting(client);
}

void ControlServer::send(Client &client)
{
    const ssize_t count = ::send(client.descriptor.get(), client.output.constData(),
                                 static_cast<std::size_t>(client.output.size()), MSG_NOSIGNAL);
    if (count < 0 && errno != EAGAIN && errno != EINTR) {
        drop(client);
        return;
    }
    client.output.remove(0, std::max<ssize_t>(count, 0));
    client.writable->setEnabled(!client.output.isEmpty());
}

void ControlServer::drop(Client &client)
{
    // The notifiers may be the senders of the current signal: silence them now, destroy them from the event loop.
    client.readable->setEnabled(false);
    client.writable->setEnabled(false);
    const auto found = std::find_if(m_clients.begin(), m_clients.end(),
                                    [&client](const auto &candidate) { return candidate.get() == &client; });
    client.readable.release()->deleteLater();
    client.writable.release()->deleteLater();
    m_clients.erase(found);
}

} // namespace ostrelle
