#pragma once

#include "foundation/Task.h"
#include "media_common/PlaybackProtocol.h"

#include <QObject>

#include <functional>

namespace ostrelle {

class PlayerProcess;
class TaskScheduler;

enum class SoundServerAnswer {
    LetIn,
    Refused, ///< or there is none
    Silent,
    NoPlayer ///< the player died or could not be started
};

/// Has a player connect to the user's sound server, as it does before it plays. Main thread; nothing here waits.
class SoundServerTrial : public QObject
{
    Q_OBJECT
public:
    /// `player` is its executable. `answer` is called once, from the event loop and within three seconds, unless this
    /// is destroyed before.
    SoundServerTrial(TaskScheduler &scheduler, const QString &player, std::function<void(SoundServerAnswer)> answer,
                     QObject *parent = nullptr);
    ~SoundServerTrial() override;

private:
    void takeReport(const PlaybackReport &report);
    void end(SoundServerAnswer answer);

    PlayerProcess *m_process; ///< a child; null when it is over
    std::function<void(SoundServerAnswer)> m_answer;
    Task m_deadline;
};

} // namespace ostrelle
