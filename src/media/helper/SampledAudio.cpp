#include "media_helper/AudioStream.h"
#include "media_helper/SoundFile.h"

#include <algorithm>
#include <array>

namespace ostrelle {
namespace {

/// Which channel of an Ogg stream (Vorbis I, 4.3.9; RFC 7845, 5.1.1.2) is which in the order of the speakers.
constexpr std::array<std::array<std::uint8_t, 8>, 9> kOggOrders{{{},
                                                                 {0},
                                                                 {0, 1},
                                                                 {0, 2, 1},
                                                                 {0, 1, 2, 3},
                                                                 {0, 2, 1, 3, 4},
                                                                 {0, 2, 1, 5, 3, 4},
                                                                 {0, 2, 1, 6, 5, 3, 4},
                                                                 {0, 2, 1, 7, 5, 6, 3, 4}}};

class SampledAudio final : public AudioStream
{
public:
    explicit SampledAudio(ByteSource &source)
        : m_reader(source)
    {
    }

    bool open()
    {
        SF_INFO facts{};
        m_file = openSoundFile(m_reader, facts);
        if (!m_file || facts.channels < 1 || facts.channels > AudioFormat::kMostChannels || facts.samplerate < 1 ||
            facts.samplerate > AudioFormat::kMostFramesPerSecond)
            return false;
        m_format.sampleRate = facts.samplerate;
        m_format.channels = facts.channels;
        m_format.speakers = usualSpeakers(facts.channels);
        // It states the greatest number for a length that the file does not tell.
        m_format.frames = facts.frames < SF_COUNT_MAX ? facts.frames : -1;
        const bool isOgg = (facts.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_OGG;
        m_isReordered = isOgg && facts.channels > 2 && facts.channels < static_cast<int>(kOggOrders.size());
        return true;
    }

    std::size_t read(std::span<float> samples) override
    {
        const auto channels = static_cast<std::size_t>(m_format.channels);
        const sf_count_t wanted = static_cast<sf_count_t>(samples.size() / channels);
        const auto frames =
            static_cast<std::size_t>(std::max<sf_count_t>(0, sf_readf_float(m_file.get(), samples.data(), wanted)));
        if (m_isReordered)
            reorder(samples.first(frames * channels));
        return frames;
    }

    bool seek(std::int64_t frame) override { return sf_seek(m_file.get(), frame, SEEK_SET) == frame; }

private:
    void reorder(std::span<float> samples) const
    {
        const auto channels = static_cast<std::size_t>(m_format.channels);
        std::array<float, 8> frame{};
        for (std::size_t at = 0; at < samples.size(); at += channels) {
            std::copy_n(&samples[at], channels, frame.begin());
            for (std::size_t i = 0; i < channels; ++i)
                samples[at + i] = frame[kOggOrders[channels][i]];
        }
    }

    ByteReader m_reader;
    SoundFile m_file;
    bool m_isReordered = false;
};

} // namespace

std::unique_ptr<AudioStream> openSampledAudio(ByteSource &source)
{
    auto stream = std::make_unique<SampledAudio>(source);
    return stream->open() ? std::move(stream) : nullptr;
}

} // namespace ostrelle
