#pragma once

#include "media_common/PlaybackProtocol.h"

#include <QByteArray>
#include <QObject>
#include <QString>

namespace ostrelle {

class HelperConnection;

/// One running player, for one file. Main thread; nothing here waits for it.
class PlayerProcess : public QObject
{
    Q_OBJECT
public:
    /// Destroying it kills the process, and with it the sound.
    explicit PlayerProcess(const QString &executable, QObject *parent = nullptr);

    /// Hands it the file, also while it is still starting; once. False when it cannot be reached.
    bool play(int file);
    /// After play().
    bool seek(double seconds, quint32 number);
    /// Kills it, and deletes this object. Nothing is emitted any more.
    void retire();

Q_SIGNALS:
    /// What it says, as far as that can be: seconds are finite, from 0 to some years.
    void reported(const PlaybackReport &report);
    /// It has ended, or said what cannot be.
    void lost();

private:
    void receive();

    HelperConnection &m_connection;
    QByteArray m_received;
};

} // namespace ostrelle
