#pragma once

#include "media_helper/AudioStream.h"

#include <cstdint>

namespace ostrelle {

// What goes between the two processes of a player, over a stream socket: one DecoderRequest, one DecoderAnswer.

enum class DecoderOrder : std::uint32_t {
    Open = 1, ///< with the descriptor of the file
    Read,
    Seek,
};

struct DecoderRequest
{
    DecoderOrder order = DecoderOrder::Open;
    std::uint32_t frames = 0; ///< of a Read: the most that are wanted
    std::int64_t frame = 0;   ///< of a Seek
};

enum class DecoderStatus : std::uint32_t {
    Done = 0,
    Declined, ///< the other player may know this kind of file
    Unplayable,
    OutOfMemory,
};

struct DecoderAnswer
{
    DecoderStatus status = DecoderStatus::Done;
    std::uint32_t frames = 0; ///< of a Read: how many follow, interleaved
    AudioFormat format;       ///< of an Open
};

} // namespace ostrelle
