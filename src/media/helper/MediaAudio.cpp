#include "media_helper/AudioStream.h"
#include "media_helper/MediaContainer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

#include <algorithm>
#include <utility>
#include <vector>

namespace ostrelle {
namespace {

/// Packets in a row without a sound, after which the rest of a file counts as broken.
constexpr int kMostSilentPackets = 2000;
/// What a decoder needs to hear before the place that is asked for.
constexpr std::int64_t kPrerollMilliseconds = 200;

struct FreeConverter
{
    void operator()(SwrContext *converter) const { swr_free(&converter); }
};

/// What frames are made of; a stream may change it on the way.
struct SampleForm
{
    int rate = 0;
    int format = AV_SAMPLE_FMT_NONE;
    int channels = 0;
    std::uint64_t mask = 0;

    friend bool operator==(const SampleForm &, const SampleForm &) = default;
};

SampleForm formOf(const AVFrame &frame)
{
    const AVChannelLayout &layout = frame.ch_layout;
    const bool hasMask = layout.order == AV_CHANNEL_ORDER_NATIVE;
    return {frame.sample_rate, frame.format, layout.nb_channels, hasMask ? layout.u.mask : 0};
}

class MediaAudio final : public AudioStream
{
public:
    explicit MediaAudio(ByteSource &source)
        : m_container(source)
        , m_packet(av_packet_alloc())
        , m_frame(av_frame_alloc())
    {
    }

    bool open()
    {
        if (!m_packet || !m_frame || !m_container.open(nullptr) || !chooseStream() || !openCodec() || !nextFrame())
            return false;
        const SampleForm form = formOf(*m_frame);
        if (form.channels < 1 || form.channels > AudioFormat::kMostChannels || form.rate < 1 ||
            form.rate > AudioFormat::kMostFramesPerSecond)
            return false;
        m_format.sampleRate = form.rate;
        m_format.channels = form.channels;
        // FFmpeg numbers the speakers as the masks of WAV do.
        m_format.speakers =
            form.mask != 0 ? static_cast<std::uint32_t>(form.mask & 0x3ffff) : usualSpeakers(form.channels);
        m_begin = m_frame->best_effort_timestamp;
        m_format.frames = knownLength();
        return convertFrame(0);
    }

    std::size_t read(std::span<float> samples) override
    {
        std::size_t done = 0;
        while (done < samples.size()) {
            if (m_taken == m_converted.size() && (!nextFrame() || !convertFrame(0)))
                break;
            const std::size_t count = std::min(samples.size() - done, m_converted.size() - m_taken);
            std::copy_n(m_converted.data() + m_taken, count, samples.data() + done);
            m_taken += count;
            done += count;
        }
        return done / static_cast<std::size_t>(m_format.channels);
    }

    bool seek(std::int64_t frame) override
    {
        if (m_begin == AV_NOPTS_VALUE)
            return false;
        const AVRational perFrame{1, m_format.sampleRate};
        const std::int64_t target = m_begin + av_rescale_q(frame, perFrame, m_stream->time_base);
        const std::int64_t preroll = av_rescale_q(kPrerollMilliseconds, {1, 1000}, m_stream->time_base);
        // Before the begin there may be a packet that only prepares the decoder, or none at all.
        AVFormatContext &format = m_container.format();
        const std::int64_t place = target - preroll;
        if (av_seek_frame(&format, m_stream->index, place, AVSEEK_FLAG_BACKWARD) < 0 &&
            (place >= m_begin || av_seek_frame(&format, m_stream->index, place, 0) < 0))
            return false;
        avcodec_flush_buffers(m_codec.get());
        m_isAtEnd = false;
        m_converted.clear();
        m_taken = 0;
        while (nextFrame()) {
            if (m_frame->best_effort_timestamp == AV_NOPTS_VALUE)
                return false;
            const std::int64_t first =
                av_rescale_q(m_frame->best_effort_timestamp - m_begin, m_stream->time_base, perFrame);
            m_heardUpTo = first + m_frame->nb_samples;
            if (frame < m_heardUpTo)
                return convertFrame(std::max<std::int64_t>(0, frame - first));
        }
        // At the end, or behind it: there is nothing to read.
        return true;
    }

    std::int64_t countFrames(std::int64_t limit) override
    {
        const bool isGuessed =
            m_container.format().duration_estimation_method == AVFMT_DURATION_FROM_BITRATE || m_format.frames < 0;
        if (!isGuessed)
            return m_format.frames;
        m_heardUpTo = 0;
        if (!seek(limit) || m_heardUpTo > limit)
            return std::min(limit, m_heardUpTo);
        // There is no such place, but every packet is known now. The last may be cut off, so those before it are heard.
        if (const AVIndexEntry *last =
                avformat_index_get_entry(m_stream, avformat_index_get_entries_count(m_stream) - 1))
            seek(av_rescale_q(last->timestamp - m_begin, m_stream->time_base, {1, m_format.sampleRate}));
        return std::min(limit, m_heardUpTo);
    }

private:
    bool chooseStream()
    {
        AVFormatContext &format = m_container.format();
        AVStream *stream = bestStream();
        // Looking into pictures would take most of the time; a head that tells all of the sound saves looking at all.
        for (unsigned i = 0; i < format.nb_streams; ++i) {
            if (format.streams[i]->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
                format.streams[i]->discard = AVDISCARD_ALL;
        }
        const bool isTold =
            stream && stream->codecpar->sample_rate > 0 && (stream->duration > 0 || m_container.format().duration > 0);
        if (!isTold && !m_container.probeStreams())
            return false;
        m_stream = bestStream();
        if (m_stream)
            m_container.keepOnly(*m_stream);
        return m_stream != nullptr;
    }

    AVStream *bestStream() const
    {
        AVFormatContext &format = m_container.format();
        const int index = av_find_best_stream(&format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
        return index >= 0 ? format.streams[index] : nullptr;
    }

    bool openCodec()
    {
        const AVCodec *decoder = avcodec_find_decoder(m_stream->codecpar->codec_id);
        m_codec.reset(decoder ? avcodec_alloc_context3(decoder) : nullptr);
        if (!m_codec || avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0)
            return false;
        m_codec->thread_count = 1;
        m_codec->pkt_timebase = m_stream->time_base;
        return avcodec_open2(m_codec.get(), decoder, nullptr) >= 0;
    }

    std::int64_t knownLength() const
    {
        const AVRational perFrame{1, m_format.sampleRate};
        if (m_stream->duration > 0)
            return av_rescale_q(m_stream->duration, m_stream->time_base, perFrame);
        const std::int64_t whole = m_container.format().duration;
        return whole > 0 ? av_rescale_q(whole, {1, AV_TIME_BASE}, perFrame) : -1;
    }

    /// The next frame with a sound; what cannot be decoded is passed over.
    bool nextFrame()
    {
        for (int packets = 0; packets < kMostSilentPackets; ++packets) {
            const int result = avcodec_receive_frame(m_codec.get(), m_frame.get());
            if (result >= 0 && m_frame->nb_samples > 0)
                return true;
            if (result == AVERROR_EOF || (result < 0 && m_isAtEnd))
                return false;
            if (result == AVERROR(EAGAIN))
                sendPacket();
        }
        return false;
    }

    void sendPacket()
    {
        m_isAtEnd = av_read_frame(&m_container.format(), m_packet.get()) < 0;
        const bool isOurs = !m_isAtEnd && m_packet->stream_index == m_stream->index;
        if (isOurs || m_isAtEnd)
            avcodec_send_packet(m_codec.get(), isOurs ? m_packet.get() : nullptr);
        av_packet_unref(m_packet.get());
    }

    /// Makes what is left of the frame after its first `skipped` samples ready to be read.
    bool convertFrame(std::int64_t skipped)
    {
        if (!ensureConverter())
            return false;
        const auto channels = static_cast<std::size_t>(m_format.channels);
        const int room = swr_get_out_samples(m_converter.get(), m_frame->nb_samples);
        m_converted.resize(static_cast<std::size_t>(std::max(room, 0)) * channels);
        auto *output = reinterpret_cast<std::uint8_t *>(m_converted.data());
        const int frames = swr_convert(m_converter.get(), &output, room,
                                       const_cast<const std::uint8_t **>(m_frame->extended_data), m_frame->nb_samples);
        m_converted.resize(static_cast<std::size_t>(std::max(frames, 0)) * channels);
        m_taken = std::min(m_converted.size(), static_cast<std::size_t>(skipped) * channels);
        return frames >= 0;
    }

    bool ensureConverter()
    {
        const SampleForm form = formOf(*m_frame);
        if (m_converter && form == m_converterForm)
            return true;
        AVChannelLayout layout{};
        if (m_format.speakers == 0 || av_channel_layout_from_mask(&layout, m_format.speakers) < 0 ||
            layout.nb_channels != m_format.channels)
            av_channel_layout_default(&layout, m_format.channels);
        // Without names for its channels it can only be taken for what it began as.
        const bool isUnnamed = form.mask == 0 && form.channels == m_format.channels;
        AVChannelLayout &input = isUnnamed ? layout : m_frame->ch_layout;
        SwrContext *converter = nullptr;
        swr_alloc_set_opts2(&converter, &layout, AV_SAMPLE_FMT_FLT, m_format.sampleRate, &input,
                            static_cast<AVSampleFormat>(form.format), form.rate, 0, nullptr);
        m_converter.reset(converter);
        m_converterForm = form;
        return converter && swr_init(converter) >= 0;
    }

    MediaContainer m_container;
    MediaCodec m_codec;
    MediaPacket m_packet;
    MediaFrame m_frame;
    std::unique_ptr<SwrContext, FreeConverter> m_converter;
    SampleForm m_converterForm;
    AVStream *m_stream = nullptr;
    std::int64_t m_begin = 0;     ///< time of the first frame, in the stream's unit
    std::int64_t m_heardUpTo = 0; ///< frames from there to the end of the one that seek() found
    std::vector<float> m_converted;
    std::size_t m_taken = 0; ///< samples of it that were read
    bool m_isAtEnd = false;
};

} // namespace

std::unique_ptr<AudioStream> openMediaAudio(ByteSource &source)
{
    auto stream = std::make_unique<MediaAudio>(source);
    return stream->open() ? std::move(stream) : nullptr;
}

} // namespace ostrelle
