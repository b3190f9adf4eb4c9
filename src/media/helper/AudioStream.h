#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace ostrelle {

class ByteSource;

struct AudioFormat
{
    static constexpr int kMostChannels = 32;
    static constexpr int kMostFramesPerSecond = 768'000;

    int sampleRate = 0; ///< frames per second, 1 to kMostFramesPerSecond
    int channels = 0;   ///< 1 to kMostChannels
    /// Where each channel belongs, one bit a speaker, in the order of the bits (WAVEFORMATEXTENSIBLE, dwChannelMask); 0
    /// when it is not known, else with as many bits as there are channels.
    std::uint32_t speakers = 0;
    std::int64_t frames = -1; ///< of what is to be heard: encoder delay and padding do not count; -1 when unknown
};

/// The usual speakers of so many channels; 0 when there is no usual set.
std::uint32_t usualSpeakers(int channels);

/// The sound of one file. Nothing here is quick enough for a realtime thread.
class AudioStream
{
public:
    virtual ~AudioStream() = default;

    const AudioFormat &format() const { return m_format; }
    /// Reads the next frames into `samples`, whose size is a multiple of the channels: interleaved, full scale from -1
    /// to 1. Returns how many frames there were: 0 at the end, or where the rest of the file is broken.
    virtual std::size_t read(std::span<float> samples) = 0;
    /// The next read() begins at exactly this frame, from 0. False when there is no going there; where the stream
    /// stands then is not defined.
    virtual bool seek(std::int64_t frame) = 0;
    /// How many frames there are, exactly, as long as they are fewer than `limit`; else at least as many. What the head
    /// of the file only guesses is counted, so this may read the file up to there. Seek before the next read().
    virtual std::int64_t countFrames(std::int64_t limit);

protected:
    AudioFormat m_format;
};

/// Each opens one kind of file at its first frame; null when it is no such file, is broken from the beginning, or has
/// figures beyond those of AudioFormat. `source` outlives the stream.
using OpenAudio = std::unique_ptr<AudioStream>(ByteSource &source);

// The light ones.
OpenAudio openMp3;
OpenAudio openMixedMp3;     ///< one channel, the average of all: quicker than to take the average of what openMp3 reads
OpenAudio openSampledAudio; ///< WAV and its kin, AIFF, CAF, FLAC, Ogg Vorbis, Opus: what libsndfile knows

// The heavy one.
OpenAudio openMediaAudio; ///< what FFmpeg knows

} // namespace ostrelle
