#pragma once

#include "foundation/Task.h"
#include "media_client/FileAdmission.h"
#include "media_common/PlaybackProtocol.h"

#include <QObject>
#include <QString>

#include <optional>

namespace ostrelle {

class PlayerProcess;
class TaskScheduler;

/// Why a file is not played, or not any more.
enum class PlaybackError {
    Unreadable,    ///< missing, not a regular file, no permission
    Unplayable,    ///< no sound in it that can be decoded
    NoSoundServer, ///< or one that refuses
    SoundServerLost,
    TimedOut,  ///< it did not start in time, or stopped telling where it is
    PlayerLost ///< the player died or could not be started
};

/// Plays one audio file at a time in a player process of its own, which decodes it in a sandbox. Nothing blocks: the
/// file is opened on another thread, the player is waited for by its socket, everything has a deadline. Main thread;
/// signals come from the event loop, never from within a call.
class Playback : public QObject
{
    Q_OBJECT
public:
    /// `helpers` is the folder of the executables ostrelle-media-play and ostrelle-media-play-extra.
    Playback(TaskScheduler &scheduler, QString helpers, QObject *parent = nullptr);
    ~Playback() override;

    static bool isInstalled(const QString &helpers);
    /// The executable that plays most files.
    static QString usualPlayer(const QString &helpers);
    /// Plays the file at an absolute path from its beginning; what plays before stops at once.
    void start(const QString &path);
    /// Goes to a place in the file, from 0 to its length. Nothing when nothing plays.
    void seek(double seconds);
    /// Stops at once; what the sound server has is thrown away. None of the signals follows.
    void stop();

Q_SIGNALS:
    /// The sound server has the first samples. Length in seconds, 0 when it is not known.
    void started(double length);
    /// About ten times a second while it plays: the seconds of the file that were heard.
    void moved(double position);
    /// The last sample was heard.
    void ended();
    void failed(PlaybackError error);

private:
    enum class Player {
        Light, ///< ostrelle-media-play: the common kinds, starts in a few milliseconds
        Extra, ///< ostrelle-media-play-extra: everything that FFmpeg knows
    };

    void run(Player player);
    void handOver();
    void takeFile(quint64 number, AdmittedFile file);
    void takeReport(const PlaybackReport &report);
    void watch();
    void fail(PlaybackError error);

    TaskScheduler &m_scheduler;
    const QString m_helpers;
    FileAdmission m_admission;
    quint64 m_number = 0;               ///< of the last start
    PlayerProcess *m_process = nullptr; ///< a child; null when nothing plays
    Player m_player = Player::Light;
    FileDescriptor m_file;
    quint32 m_lastSeek = 0;
    std::optional<double> m_wantedPlace; ///< sought before the file was open
    Task m_deadline;
};

} // namespace ostrelle
