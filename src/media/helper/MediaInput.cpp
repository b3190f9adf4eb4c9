#include "media_helper/MediaInput.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cerrno>

namespace ostrelle {
namespace {

constexpr int kBufferSize = 64 * 1024;
/// How far FFmpeg looks to find out what streams there are.
constexpr std::int64_t kProbedBytes = 8 << 20;
constexpr std::int64_t kProbedMicroseconds = 3'000'000;
/// Packets without a picture that are read before a file counts as endless.
constexpr int kMostPackets = 5000;
constexpr std::int64_t kMostPixels = 100'000'000;

int readBytes(void *reader, std::uint8_t *data, int size)
{
    const std::size_t count = static_cast<ByteReader *>(reader)->read({data, static_cast<std::size_t>(size)});
    return count > 0 ? static_cast<int>(count) : AVERROR_EOF;
}

std::int64_t seekTo(void *opaque, std::int64_t offset, int whence)
{
    auto &reader = *static_cast<ByteReader *>(opaque);
    const auto size = static_cast<std::int64_t>(reader.source().size());
    if ((whence & AVSEEK_SIZE) != 0)
        return size;
    switch (whence & ~AVSEEK_FORCE) {
    case SEEK_CUR:
        offset += static_cast<std::int64_t>(reader.position());
        break;
    case SEEK_END:
        offset += size;
        break;
    default:
        break;
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    reader.seek(static_cast<std::uint64_t>(offset));
    return offset;
}

/// Lists and playlists name other files; there are none here.
int refuseToOpen(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **)
{
    return AVERROR(EACCES);
}

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

void FreeMedia::operator()(AVCodecContext *codec) const
{
    avcodec_free_context(&codec);
}

void FreeMedia::operator()(AVFormatContext *format) const
{
    avformat_close_input(&format);
}

void FreeMedia::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

void FreeMedia::operator()(AVIOContext *input) const
{
    av_freep(&input->buffer);
    avio_context_free(&input);
}

void FreeMedia::operator()(AVPacket *packet) const
{
    av_packet_free(&packet);
}

MediaInput::MediaInput(OnlyOpen, ByteSource &source)
    : m_reader(source)
    , m_input(avio_alloc_context(static_cast<unsigned char *>(av_malloc(kBufferSize)), kBufferSize, 0, &m_reader,
                                 readBytes, nullptr, seekTo))
    , m_packet(av_packet_alloc())
{
}

std::unique_ptr<MediaInput> MediaInput::open(ByteSource &source, const char *format)
{
    std::unique_ptr<MediaInput> input = std::make_unique<MediaInput>(OnlyOpen{}, source);
    return input->openFormat(format) && input->openCodec() ? std::move(input) : nullptr;
}

bool MediaInput::openFormat(const char *format)
{
    AVFormatContext *context = avformat_alloc_context();
    if (!context || !m_input)
        return false;
    context->pb = m_input.get();
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->io_open = refuseToOpen;
    context->probesize = kProbedBytes;
    context->max_analyze_duration = kProbedMicroseconds;
    // On failure it frees the context by itself.
    if (avformat_open_input(&context, nullptr, format ? av_find_input_format(format) : nullptr, nullptr) < 0)
        return false;
    m_format.reset(context);
    if (avformat_find_stream_info(context, nullptr) < 0)
        return false;
    m_stream = pictureStream(*context);
    for (unsigned i = 0; i < context->nb_streams; ++i) {
        if (context->streams[i] != m_stream)
            context->streams[i]->discard = AVDISCARD_ALL;
    }
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
    return std::max<std::int64_t>(m_format->duration, 0);
}

bool MediaInput::seek(std::int64_t time)
{
    const std::int64_t begin = m_format->start_time == AV_NOPTS_VALUE ? 0 : m_format->start_time;
    if (av_seek_frame(m_format.get(), -1, begin + time, AVSEEK_FLAG_BACKWARD) < 0)
        return false;
    avcodec_flush_buffers(m_codec.get());
    m_isAtEnd = false;
    return true;
}

bool MediaInput::sendNextPacket()
{
    for (int read = 0; read < kMostPackets; ++read) {
        if (av_read_frame(m_format.get(), m_packet.get()) < 0) {
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
