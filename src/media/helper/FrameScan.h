#pragma once

#include "media_helper/AudioFrameHeader.h"
#include "media_helper/ByteSource.h"

namespace ostrelle {

/// What the frames of a bare stream come to.
struct FrameScan
{
    double frames = 0;
    double bytesPerFrame = 0;
    /// All frames have one: bits per second; 0 when they differ, or do not say.
    unsigned bitRate = 0;
    double share = 0; ///< of the bytes that were looked at: 1 when there is nothing but frames
};

/// A frame found in a stream.
struct PlacedFrame
{
    std::uint64_t offset = 0;
    AudioFrameHeader header;
};

/// The first frame that another one follows, not far from the begin.
std::optional<PlacedFrame> firstFrame(ByteSource &source, ReadFrameHeader &readHeader);

/// Goes through the frames like `model` from `begin` to the end of `source`: all of them in up to 3 MiB, else those in
/// many parts spread evenly, from which it concludes. Nothing when there are none.
std::optional<FrameScan> scanFrames(ByteSource &source, std::uint64_t begin, const AudioFrameHeader &model,
                                    ReadFrameHeader &readHeader);

} // namespace ostrelle
