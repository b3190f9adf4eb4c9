#pragma once

#include "media_helper/ByteSource.h"

#include <cstdint>
#include <memory>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVIOContext;
struct AVPacket;
struct AVStream;

namespace ostrelle {

/// FFmpeg's objects, each freed by its own function.
struct FreeMedia
{
    void operator()(AVCodecContext *codec) const;
    void operator()(AVFormatContext *format) const;
    void operator()(AVFrame *frame) const;
    void operator()(AVIOContext *input) const;
    void operator()(AVPacket *packet) const;
};
using MediaFrame = std::unique_ptr<AVFrame, FreeMedia>;

/// The picture stream of a media file: its video, or the cover that a song carries.
class MediaInput
{
    struct OnlyOpen
    {
    };

public:
    /// Nothing when FFmpeg does not know the file, or it has no pictures. `format` is FFmpeg's name of the only kind to
    /// try, or null.
    static std::unique_ptr<MediaInput> open(ByteSource &source, const char *format);

    MediaInput(OnlyOpen, ByteSource &source);

    const AVStream &stream() const { return *m_stream; }
    bool isCover() const;
    /// In microseconds; 0 when it is not known.
    std::int64_t duration() const;
    /// Goes to the last whole picture before a time in microseconds.
    bool seek(std::int64_t time);
    /// The next picture, from there on; null at the end.
    MediaFrame nextFrame();

private:
    bool openFormat(const char *format);
    bool openCodec();
    bool sendNextPacket();

    ByteReader m_reader;
    std::unique_ptr<AVIOContext, FreeMedia> m_input;
    std::unique_ptr<AVFormatContext, FreeMedia> m_format;
    std::unique_ptr<AVCodecContext, FreeMedia> m_codec;
    std::unique_ptr<AVPacket, FreeMedia> m_packet;
    AVStream *m_stream = nullptr;
    bool m_isAtEnd = false;
};

} // namespace ostrelle
