#pragma once

#include "foundation/FileDescriptor.h"
#include "media_player/DecoderProtocol.h"
#include "media_player/DecoderService.h"

#include <memory>
#include <optional>
#include <variant>

namespace ostrelle {

/// The process that decodes, apart from the one that is connected to the sound server: over such a connection a file
/// that takes its decoder over could listen to the microphone, or have the server load code. Ends with this process.
class DecoderProcess
{
    struct OnlyStart
    {
    };

public:
    /// Before this process has a second thread, or a descriptor that the other must not have beyond its own sandbox.
    /// Null when there can be none.
    static std::unique_ptr<DecoderProcess> start(const AudioTable &table);
    DecoderProcess(OnlyStart, FileDescriptor socket);

    /// Opens the file over there, once. The stream speaks to this object. What it says is checked, but for the samples.
    std::variant<std::unique_ptr<AudioStream>, DecoderStatus> open(const FileDescriptor &file);

private:
    class Stream;

    /// The answer; nothing when the process died of it, or answers nonsense.
    std::optional<DecoderAnswer> ask(const DecoderRequest &request, int file = -1);
    bool receive(void *bytes, std::size_t size);

    FileDescriptor m_socket;
};

} // namespace ostrelle
