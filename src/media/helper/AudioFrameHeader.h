#pragma once

#include <cstdint>
#include <optional>
#include <span>

namespace ostrelle {

/// What the header of one frame of a bare stream says.
struct AudioFrameHeader
{
    unsigned byteSize = 0; ///< of the whole frame
    unsigned samples = 0;  ///< per channel
    unsigned sampleRate = 0;
    unsigned channels = 0; ///< 0: told inside the frame
    unsigned bitRate = 0;  ///< bits per second; 0 where headers do not tell
    /// What all frames of one stream have in common, as a value to compare.
    std::uint32_t signature = 0;
};

/// The bytes that a reader below wants to see.
inline constexpr std::size_t kFrameHeaderBytes = 8;

/// Reads a header at the begin of `bytes`; nothing when there is none.
using ReadFrameHeader = std::optional<AudioFrameHeader>(std::span<const std::uint8_t> bytes);
/// MPEG-1, 2 and 2.5, layers I to III (ISO/IEC 11172-3, 2.4.2.3; 13818-3). Frames of free format have none.
ReadFrameHeader readMpegFrameHeader;
/// AAC in ADTS (ISO/IEC 13818-7, 6.2).
ReadFrameHeader readAdtsFrameHeader;

/// Frames per second by AAC's index; 0 when it means none.
unsigned aacSampleRate(unsigned index);

/// Whether `head` begins with a frame that is followed by another one of the same stream, as far as `head` reaches.
bool beginsWithFrames(std::span<const std::uint8_t> head, ReadFrameHeader &readHeader);

/// Whether `head` is a piece of a stream: from one place on nothing but frames, at least three.
bool endsWithFrames(std::span<const std::uint8_t> head, ReadFrameHeader &readHeader);

} // namespace ostrelle
