#include "media_helper/MediaContainer.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cerrno>
#include <string_view>

namespace ostrelle {
namespace {

constexpr int kBufferSize = 64 * 1024;
/// How far FFmpeg looks to find out what streams there are.
constexpr std::int64_t kProbedBytes = 8 << 20;
constexpr std::int64_t kProbedMicroseconds = 3'000'000;

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

MediaContainer::MediaContainer(ByteSource &source)
    : m_reader(source)
    , m_input(avio_alloc_context(static_cast<unsigned char *>(av_malloc(kBufferSize)), kBufferSize, 0, &m_reader,
                                 readBytes, nullptr, seekTo))
{
}

bool MediaContainer::open(const char *format)
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
    // Plain text was taken for speech with a certainty of 26 of 100. FFmpeg is as unsure of films in program streams,
    // which begin with a mark that is looked for before.
    constexpr int kLeastCertainty = 27;
    const bool isProgramStream = std::string_view(m_format->iformat->name) == "mpeg";
    return format || isProgramStream || m_format->probe_score >= kLeastCertainty;
}

bool MediaContainer::probeStreams()
{
    return avformat_find_stream_info(m_format.get(), nullptr) >= 0;
}

void MediaContainer::keepOnly(const AVStream &stream)
{
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        if (m_format->streams[i] != &stream)
            m_format->streams[i]->discard = AVDISCARD_ALL;
    }
}

} // namespace ostrelle
