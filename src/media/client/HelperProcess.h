#pragma once

#include "media_client/HelperPriority.h"
#include "media_common/HelperProtocol.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace ostrelle {

class HelperConnection;

/// One running media helper, which is handed one file at a time. Main thread; nothing here waits for it.
class HelperProcess : public QObject
{
    Q_OBJECT
public:
    /// Destroying it kills the process.
    HelperProcess(const QString &executable, HelperPriority priority, QObject *parent = nullptr);

    /// Hands it a file, also while it is still starting. False when it cannot be reached any more.
    bool ask(const HelperRequest &request, int file);
    /// Of a lost one: whether it never ran.
    bool hasFailedToStart() const;
    /// Kills it, and deletes this object. Nothing is emitted any more.
    void retire();

Q_SIGNALS:
    /// The answer to the file, checked against the request: of an answer that is not Done the payload is empty.
    void answered(const HelperAnswer &answer, const QByteArray &payload);
    /// It has ended, or answered what nobody asked for.
    void lost();

private:
    void receive();
    bool takeHeader();

    HelperConnection &m_connection;
    bool m_isBusy = false;
    bool m_hasHeader = false;
    HelperRequest m_request;
    HelperAnswer m_answer;
    QByteArray m_received;
};

} // namespace ostrelle
