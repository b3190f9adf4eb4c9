#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

#include <sys/types.h>

class QSocketNotifier;

namespace ostrelle {

/// The small process that keeps the clipboard's content when this one ends. It is given the content over a socket that
/// is its standard input (never by arguments, environment or files), takes the selection, says so with one byte, and
/// then goes its own way. Main thread.
class KeeperProcess : public QObject
{
    Q_OBJECT
public:
    struct Content
    {
        QByteArrayList types; ///< the names under which it is served
        QByteArray bytes;
    };

    /// Starts it. `expectedOwner` is the window that it takes the selection from; when another one has it by then, it
    /// does nothing.
    KeeperProcess(const QString &executable, quint32 expectedOwner, const QList<Content> &contents);
    ~KeeperProcess() override;

    /// It has answered, or cannot any more.
    bool isOver() const { return m_isOver; }
    bool hasTakenOver() const { return m_hasTakenOver; }

private:
    void start(const QString &executable);
    void sendMore();
    void receive();
    void end();

    QByteArray m_message;
    qsizetype m_sent = 0;
    int m_socket = -1;
    pid_t m_pid = -1;
    std::unique_ptr<QSocketNotifier> m_writable;
    std::unique_ptr<QSocketNotifier> m_readable;
    bool m_isOver = false;
    bool m_hasTakenOver = false;
};

} // namespace ostrelle
