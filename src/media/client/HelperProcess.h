#pragma once

#include "foundation/FileDescriptor.h"
#include "media_common/HelperProtocol.h"

#include <QByteArray>
#include <QObject>
#include <QString>

#include <memory>

class QSocketNotifier;

namespace ostrelle {

enum class HelperPriority {
    Usual,
    Background, ///< gives way to whatever else wants to compute, first of all to the program itself
};

/// One running media helper, which is handed one file at a time. Main thread; nothing here waits for it.
class HelperProcess : public QObject
{
    Q_OBJECT
public:
    HelperProcess(const QString &executable, HelperPriority priority, QObject *parent = nullptr);
    /// Kills it.
    ~HelperProcess() override;

    /// Hands it a file, also while it is still starting. False when it cannot be reached any more.
    bool ask(const HelperRequest &request, int file);
    /// Kills it, and deletes this object when it is gone. Nothing is emitted any more.
    void retire();

Q_SIGNALS:
    /// The answer to the file, checked against the request: of an answer that is not Done the payload is empty.
    void answered(const HelperAnswer &answer, const QByteArray &payload);
    /// It has ended, or answered what nobody asked for.
    void lost();

private:
    class Start;

    void start(const QString &executable, HelperPriority priority);
    void receive();
    bool takeHeader();
    void kill();

    // Shared with the thread that starts it, which may take longer than this object lives.
    std::shared_ptr<Start> m_start;
    FileDescriptor m_socket;
    FileDescriptor m_end; ///< readable when the process has ended
    std::unique_ptr<QSocketNotifier> m_readable;
    std::unique_ptr<QSocketNotifier> m_ended;
    bool m_isBusy = false;
    bool m_hasHeader = false;
    HelperRequest m_request;
    HelperAnswer m_answer;
    QByteArray m_received;
};

} // namespace ostrelle
