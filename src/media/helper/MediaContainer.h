#pragma once

#include "media_helper/ByteSource.h"

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
using MediaCodec = std::unique_ptr<AVCodecContext, FreeMedia>;
using MediaFrame = std::unique_ptr<AVFrame, FreeMedia>;
using MediaPacket = std::unique_ptr<AVPacket, FreeMedia>;

/// A media file as FFmpeg reads it, from nowhere but its source. Stays where it was made, because FFmpeg keeps its
/// address.
class MediaContainer
{
public:
    explicit MediaContainer(ByteSource &source);
    MediaContainer(const MediaContainer &) = delete;
    MediaContainer &operator=(const MediaContainer &) = delete;

    /// Reads the head of the file. False when FFmpeg does not know it. `format` is FFmpeg's name of the only kind to
    /// try, or null.
    bool open(const char *format);
    /// Looks into the streams that are not discarded, for what the head does not tell of them.
    bool probeStreams();
    /// After this only the packets of one stream are read.
    void keepOnly(const AVStream &stream);

    /// After open().
    AVFormatContext &format() const { return *m_format; }

private:
    ByteReader m_reader;
    std::unique_ptr<AVIOContext, FreeMedia> m_input;
    std::unique_ptr<AVFormatContext, FreeMedia> m_format;
};

} // namespace ostrelle
