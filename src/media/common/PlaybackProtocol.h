#pragma once

#include <cstdint>

namespace ostrelle {

/// What goes over the socket between the program and a player, both of one machine and one build. The player's standard
/// input is a stream socket. PlaybackCommands come in, the first one with the descriptor of the file (SCM_RIGHTS), and
/// PlaybackReports go out. A socket that closes ends the player; its own end is the end of playing.
inline constexpr std::uint32_t kPlaybackMagic = 0x6c50734f;

enum class PlaybackOrder : std::uint32_t {
    Play = 1, ///< from the beginning, once
    Seek = 2,
};

struct PlaybackCommand
{
    std::uint32_t magic = kPlaybackMagic;
    PlaybackOrder order = PlaybackOrder::Play;
    std::uint32_t number = 0; ///< of a Seek: counts up
    std::uint32_t padding = 0;
    double seconds = 0; ///< of a Seek: from the beginning of the file
};

enum class PlaybackEvent : std::uint32_t {
    Connected = 1, ///< the sound server has let the player in
    Started,       ///< the first samples are with the sound server
    Moved,         ///< a position, several times a second
    Ended,         ///< the last sample was heard
    Declined,      ///< the other player may know this kind of file
    Failed,
};

enum class PlaybackFailure : std::uint32_t {
    None = 0,
    NoServer,    ///< no sound server, or it refuses
    ServerLost,  ///< it went away
    Unplayable,  ///< no sound in the file, or none that can be decoded
    OutOfMemory, ///< or a library met what it did not expect
};

struct PlaybackReport
{
    std::uint32_t magic = kPlaybackMagic;
    PlaybackEvent event = PlaybackEvent::Moved;
    PlaybackFailure failure = PlaybackFailure::None; ///< of Failed
    std::uint32_t seek = 0;                          ///< number of the last Seek that was done
    double position = 0;                             ///< seconds of the file that were heard
    double length = 0;                               ///< seconds, 0 when unknown
};

} // namespace ostrelle
