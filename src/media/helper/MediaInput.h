#pragma once

#include "media_helper/MediaContainer.h"

#include <cstdint>
#include <memory>

namespace ostrelle {

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
    bool openStream(const char *format);
    bool openCodec();
    bool sendNextPacket();

    MediaContainer m_container;
    MediaCodec m_codec;
    MediaPacket m_packet;
    AVStream *m_stream = nullptr;
    bool m_isAtEnd = false;
};

} // namespace ostrelle
