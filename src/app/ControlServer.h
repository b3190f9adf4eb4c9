#pragma once

#include "foundation/FileDescriptor.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>

#include <memory>
#include <vector>

namespace ostrelle {

class RequestRouter;

/// Listens on the control socket and answers the commands of this user, one line each. Never waits for a peer: what a
/// client has not sent or not taken yet stays buffered. Main thread.
class ControlServer : public QObject
{
    Q_OBJECT
public:
    ControlServer(RequestRouter &router, QObject *parent = nullptr);
    ~ControlServer() override;

    /// False when the socket cannot be made; the program then runs without commands.
    bool listen(const QString &path);
    /// Nobody can connect any more; who is connected is still answered.
    void stopListening();

private:
    struct Client;

    void accept();
    void receive(Client &client);
    void answerWaiting(Client &client);
    void answered(quint64 number, const QByteArray &line);
    void send(Client &client);
    void drop(Client &client);

    RequestRouter &m_router;
    QString m_path;
    FileDescriptor m_listener;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::vector<std::unique_ptr<Client>> m_clients;
    quint64 m_accepted = 0;
};

} // namespace ostrelle
