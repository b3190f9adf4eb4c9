#pragma once

#include "foundation/FileDescriptor.h"
#include "media_client/HelperPriority.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>
#include <span>

class QSocketNotifier;

namespace ostrelle {

/// A helper's process and the socket to it, which is the helper's standard input. Main thread; nothing here waits for
/// it.
class HelperConnection : public QObject
{
    Q_OBJECT
public:
    /// Starts a process ahead of the connection to it, be it before there is an application object: the next connection
    /// to this executable, at the usual priority and without variables of its own, takes it. One that is not taken ends
    /// with this process. Holds the caller up for about 0.3 ms.
    static void startAhead(const QString &executable);

    /// Starts the process. It gets only those environment variables that every helper needs, and `variables`.
    HelperConnection(const QString &executable, HelperPriority priority, std::span<const char *const> variables,
                     QObject *parent = nullptr);
    /// Kills it.
    ~HelperConnection() override;

    /// Sends a record, with a descriptor if `file` is one; also while the process is still starting. False when it
    /// cannot be reached any more.
    bool send(const void *record, std::size_t size, int file = -1);
    /// Appends up to `most` bytes that have come to `received`. False when the process is gone, after which readable()
    /// is silent.
    bool receive(QByteArray &received, qsizetype most);
    /// Whether the process could not be started; known once receive() has told that it is gone.
    bool hasFailedToStart() const;
    /// readable() is silent from now on.
    void stopReading();
    /// Kills it, and deletes this object when it is gone. Nothing is emitted any more.
    void retire();

Q_SIGNALS:
    void readable();

private:
    class Start;
    struct Ahead;

    static Ahead &ahead();
    void kill();

    // Shared with the thread that starts it, which may take longer than this object lives.
    std::shared_ptr<Start> m_start;
    FileDescriptor m_socket;
    FileDescriptor m_end; ///< readable when the process has ended
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_ended;
};

} // namespace ostrelle
