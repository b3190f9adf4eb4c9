#pragma once

#include "foundation/FileDescriptor.h"
#include "media_common/PlaybackProtocol.h"

#include <optional>
#include <utility>

struct pa_io_event;

namespace ostrelle {

class SoundServer;

/// The player's side of the socket to the program: its commands, collected in the sound server's event loop, and the
/// reports to it.
class ProgramLink
{
public:
    explicit ProgramLink(SoundServer &server);
    ~ProgramLink();
    ProgramLink(const ProgramLink &) = delete;
    ProgramLink &operator=(const ProgramLink &) = delete;

    /// The program is gone, or does not keep to the protocol.
    bool isClosed() const { return m_isClosed; }
    /// The file that is to be played, once it has come; nothing again after that.
    FileDescriptor takeFile() { return std::move(m_file); }
    /// The newest place that was asked for since the last call.
    std::optional<PlaybackCommand> takeSeek() { return std::exchange(m_seek, std::nullopt); }

    /// Without a loop, for what is told before there is one.
    static void report(const PlaybackReport &report);
    /// Drops the report when the program does not listen at the moment.
    static void reportIfHeard(const PlaybackReport &report);

private:
    void receive();

    SoundServer &m_server;
    pa_io_event *m_event;
    bool m_isClosed = false;
    FileDescriptor m_file;
    std::optional<PlaybackCommand> m_seek;
};

} // namespace ostrelle
