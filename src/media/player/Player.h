#pragma once

#include "media_helper/AudioStream.h"
#include "media_player/ProgramLink.h"
#include "media_player/SoundOutput.h"

#include <cstdint>
#include <vector>

struct pa_time_event;

namespace ostrelle {

class SoundServer;

/// Plays one sound from its beginning to its end, and does what the program says meanwhile.
class Player
{
public:
    Player(SoundServer &server, ProgramLink &link, AudioStream &sound, SoundOutput &output);
    ~Player();
    Player(const Player &) = delete;
    Player &operator=(const Player &) = delete;

    /// Returns when it is over, which was reported, or the program is gone.
    void play();

private:
    void goTo(const PlaybackCommand &command);
    bool moveSound(std::int64_t frame);
    void writeMore(std::size_t wantedSamples);
    void finishWriting();
    void reportPosition(std::int64_t delay);
    PlaybackReport reportOf(PlaybackEvent event) const;
    double secondsAt(std::int64_t frame) const;
    void setTimer();

    SoundServer &m_server;
    ProgramLink &m_link;
    AudioStream &m_sound;
    SoundOutput &m_output;
    pa_time_event *m_timer = nullptr;
    bool m_isTimeUp = false;
    bool m_hasStarted = false;
    bool m_isWritten = false;     ///< all of it
    std::uint32_t m_seek = 0;     ///< number of the last one
    std::int64_t m_begin = 0;     ///< frame of the file where it began, or was sent to
    std::int64_t m_next = 0;      ///< frame of the file that is written next
    std::vector<float> m_portion; ///< of samples
};

} // namespace ostrelle
