#include "media_helper/MediaInput.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <algorithm>

namespace ostrelle {
namespace {

/// Packets without a picture that are read before a file counts as endless.
constexpr int kMostPackets = 5000;
constexpr std::int64_t kMostPixels = 100'000'000;

/// A real video before a cover.
AVStream *pictureStream(const AVFormatContext &format)
{
    AVStream *chosen = nullptr;
    for (unsigned i = 0; i < format.nb_streams; ++i) {
        AVStream *stream = format.streams[i];
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_VIDEO || stream->codecpar->codec_id == AV_CODEC_ID_NONE)
            continue;
        const bool isCover = (stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
        if (!chosen || (!isCover && (chosen->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0))
            chosen = stream;
    }
    return chosen;
}

} // namespace

MediaInput::MediaInput(OnlyOpen, ByteSource &source)
    : m_container(source)
    , m_packet(av_packet_alloc())
{
}

std::unique_ptr<MediaInput> MediaInput::open(ByteSource &source, const char *format)
{
    std::unique_ptr<MediaInput> input = std::make_unique<MediaInput>(OnlyOpen{}, source);
    return input->openStream(format) && input->openCodec() ? std::move(input) : nullptr;
}

bool MediaInput::openStream(const char *format)
{
    if (!m_container.open(format) || !m_container.probeStreams())
        return false;
    m_stream = pictureStream(m_container.format());
    if (m_stream)
        m_container.keepOnly(*m_stream);
    return m_stream != nullptr;
}

bool MediaInput::openCodec()
{
    const AVCodec *decoder = avcodec_find_decoder(m_stream->codecpar->codec_id);
    m_codec.reset(decoder ? avcodec_alloc_context3(decoder) : nullptr);
    if (!m_codec || avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar) < 0)
        return false;
    m_codec->thread_count = 1;
    m_codec->max_pixels = kMostPixels;
    // Half the work, and nothing that a small picture shows.
    m_codec->skip_loop_filter = AVDISCARD_ALL;
    return avcodec_open2(m_codec.get(), decoder, nullptr) >= 0;
}

bool MediaInput::isCover() const
{
    return (m_stream->disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

std::int64_t MediaInput::duration() const
{
    return std::max<std::int64_t>(m_container.format().duration, 0);
}

bool MediaInput::seek(std::int64_t time)
{
    const std::int64_t begin = m_container.format().start_time == AV_NOPTS_VALUE ? 0 : m_container.format().start_time;
    if (av_seek_frame(&m_container.format(), -1, begin + time, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    avcodec_flush_buffers(m_codec.get());
    m_isAtEnd = false;
    return true;
}

bool MediaInput::sendNextPacket()
{
    for (int read = 0; read < kMostPackets; ++read) {
        if (av_read_frame(&m_container.format(), m_packet.get()) < 0) {
            m_isAtEnd = true;
            return avcodec_send_packet(m_codec.get(), nullptr) >= 0;
        }
        const bool isOurs = m_packet->stream_index == m_stream->index;
        const int result = isOurs ? avcodec_send_packet(m_codec.get(), m_packet.get()) : 0;
        av_packet_unref(m_packet.get());
        if (isOurs && result >= 0)
            return true;
    }
    return false;
}

MediaFrame MediaInput::nextFrame()
{
    MediaFrame frame(av_frame_alloc());
    for (int packets = 0; frame && packets < kMostPackets; ++packets) {
        const int result = avcodec_receive_frame(m_codec.get(), frame.get());
        if (result >= 0)
            return frame;
        if (result != AVERROR(EAGAIN) || m_isAtEnd || !sendNextPacket())
            break;
    }
    return nullptr;
}

} // namespace ostrelle
