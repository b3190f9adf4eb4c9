#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

struct pa_operation;
struct pa_stream;

namespace ostrelle {

class SoundServer;
struct AudioFormat;

/// One stream of samples to the sound server. What it is told happens in the server's event loop.
class SoundOutput
{
    struct OnlyCreate
    {
    };

public:
    /// Null when the server cannot have such samples. The server outlives it.
    static std::unique_ptr<SoundOutput> create(SoundServer &server, const AudioFormat &format);
    SoundOutput(OnlyCreate, SoundServer &server, pa_stream *stream);
    ~SoundOutput();
    SoundOutput(const SoundOutput &) = delete;
    SoundOutput &operator=(const SoundOutput &) = delete;

    /// The server refused it or threw it out.
    bool isLost() const;
    /// How many samples, of all channels, the server wants now.
    std::size_t wantedSamples() const;
    /// False when the stream is lost.
    bool write(std::span<const float> samples);
    /// Throws away what was written and not heard yet.
    void discard();
    /// From now on nothing is written; isDrained() when the last sample was heard. discard() takes it back.
    void drain();
    bool isDrained() const { return m_isDrained; }

    /// Asks how far the server is.
    void askDelay();
    /// The answer, once: microseconds of what was written that are still to be heard.
    std::optional<std::int64_t> takeDelay();

private:
    void cancelDrain();

    SoundServer &m_server;
    pa_stream *m_stream;
    pa_operation *m_drain = nullptr;
    bool m_isDrained = false;
    bool m_hasDelay = false;
};

} // namespace ostrelle
