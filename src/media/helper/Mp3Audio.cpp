#include "media_helper/AudioStream.h"
#include "media_helper/ByteSource.h"

#include <mpg123.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace ostrelle {
namespace {

/// How far a frame is looked for where there is none.
constexpr long kResyncBytes = 256 * 1024;
/// How many frames are decoded before a place that is gone to: at low rates a frame lives on what eleven before it
/// left.
constexpr long kPreparingFrames = 12;
/// How many frames tell whether the bit rate varies.
constexpr int kProbedFrames = 40;
/// Every frame of a larger file is not counted before it is heard.
constexpr std::uint64_t kLargestCounted = 8U << 20U;

struct CloseDecoder
{
    void operator()(mpg123_handle *decoder) const { mpg123_delete(decoder); }
};

mpg123_ssize_t readFile(void *reader, void *bytes, std::size_t count)
{
    return static_cast<mpg123_ssize_t>(
        static_cast<ByteReader *>(reader)->read({static_cast<std::uint8_t *>(bytes), count}));
}

off_t seekFile(void *opaque, off_t offset, int whence)
{
    ByteReader &reader = *static_cast<ByteReader *>(opaque);
    off_t begin = 0;
    if (whence == SEEK_CUR)
        begin = static_cast<off_t>(reader.position());
    else if (whence == SEEK_END)
        begin = static_cast<off_t>(reader.source().size());
    off_t place = 0;
    if (__builtin_add_overflow(begin, offset, &place) || place < 0)
        return -1;
    reader.seek(static_cast<std::uint64_t>(place));
    return place;
}

enum class Channels { AsStored, Mixed };

class Mp3Audio final : public AudioStream
{
public:
    Mp3Audio(ByteSource &source, Channels channels)
        : m_reader(source)
        , m_channels(channels)
        , m_decoder(mpg123_new(nullptr, nullptr))
    {
    }

    bool open()
    {
        if (!m_decoder || !configure() || mpg123_open_handle(m_decoder.get(), &m_reader) != MPG123_OK)
            return false;
        long rate = 0;
        int channels = 0;
        int encoding = 0;
        if (mpg123_getformat(m_decoder.get(), &rate, &channels, &encoding) != MPG123_OK ||
            encoding != MPG123_ENC_FLOAT_32)
            return false;
        // What comes later in another form is turned into that of the beginning.
        mpg123_format_none(m_decoder.get());
        if (mpg123_format(m_decoder.get(), rate, channels, encoding) != MPG123_OK)
            return false;
        m_format.sampleRate = static_cast<int>(rate);
        m_format.channels = channels;
        m_format.speakers = usualSpeakers(channels);
        m_format.frames = knownLength();
        return seek(0);
    }

    std::size_t read(std::span<float> samples) override
    {
        const std::size_t frameSize = static_cast<std::size_t>(m_format.channels) * sizeof(float);
        std::size_t frames = 0;
        while (frames * frameSize < samples.size_bytes()) {
            std::size_t bytes = 0;
            const int result = mpg123_read(m_decoder.get(), samples.data() + frames * frameSize / sizeof(float),
                                           samples.size_bytes() - frames * frameSize, &bytes);
            frames += bytes / frameSize;
            if (result != MPG123_OK && result != MPG123_NEW_FORMAT)
                break;
        }
        return frames;
    }

    bool seek(std::int64_t frame) override { return mpg123_seek(m_decoder.get(), frame, SEEK_SET) == frame; }

    std::int64_t countFrames(std::int64_t limit) override
    {
        constexpr std::size_t kMostChannels = 2;
        std::array<float, kMostChannels> frame{};
        const auto channels = static_cast<std::size_t>(m_format.channels);
        if (seek(limit) && read(std::span(frame).first(channels)) > 0)
            return limit;
        // The decoder has met the end and knows now where that is, whatever the head of the file says.
        return std::max<std::int64_t>(0, mpg123_length(m_decoder.get()));
    }

private:
    bool configure()
    {
        mpg123_handle *decoder = m_decoder.get();
        const long mixing = m_channels == Channels::Mixed ? MPG123_MONO_MIX : 0;
        const long flags = MPG123_QUIET | MPG123_FORCE_FLOAT | MPG123_GAPLESS | MPG123_SKIP_ID3V2 | mixing;
        return mpg123_param(decoder, MPG123_ADD_FLAGS, flags, 0) == MPG123_OK &&
               mpg123_param(decoder, MPG123_RESYNC_LIMIT, kResyncBytes, 0) == MPG123_OK &&
               mpg123_param(decoder, MPG123_PREFRAMES, kPreparingFrames, 0) == MPG123_OK &&
               mpg123_replace_reader_handle(decoder, readFile, seekFile, nullptr) == MPG123_OK;
    }

    std::int64_t knownLength()
    {
        if (isLengthGuessed()) {
            if (m_reader.source().size() > kLargestCounted)
                return -1;
            mpg123_scan(m_decoder.get());
        }
        return std::max<std::int64_t>(-1, mpg123_length(m_decoder.get()));
    }

    /// Without a header that counts the frames the length comes from the first frame's bit rate, which is right as long
    /// as the others have the same.
    bool isLengthGuessed()
    {
        int bitRate = 0;
        for (int i = 0; i < kProbedFrames; ++i) {
            mpg123_frameinfo facts{};
            if (mpg123_info(m_decoder.get(), &facts) != MPG123_OK || facts.vbr != MPG123_CBR)
                return false;
            if (bitRate != 0 && facts.bitrate != bitRate)
                return true;
            bitRate = facts.bitrate;
            if (mpg123_framebyframe_next(m_decoder.get()) != MPG123_OK)
                return false;
        }
        return false;
    }

    ByteReader m_reader;
    Channels m_channels;
    std::unique_ptr<mpg123_handle, CloseDecoder> m_decoder;
};

std::unique_ptr<AudioStream> openWith(ByteSource &source, Channels channels)
{
    auto stream = std::make_unique<Mp3Audio>(source, channels);
    return stream->open() ? std::move(stream) : nullptr;
}

} // namespace

std::unique_ptr<AudioStream> openMp3(ByteSource &source)
{
    return openWith(source, Channels::AsStored);
}

std::unique_ptr<AudioStream> openMixedMp3(ByteSource &source)
{
    return openWith(source, Channels::Mixed);
}

} // namespace ostrelle
