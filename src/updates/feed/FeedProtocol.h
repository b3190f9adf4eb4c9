#pragma once

#include "updates/FeedOutcome.h"

#include <array>
#include <cstdint>

namespace ostrelle {

/// What goes over the socket between the program and `ostrelle-update-feed`, both of one machine and one build. The
/// socket is that program's standard input: one FeedRequest comes in, one FeedReply with its payload goes back, and it
/// ends.
inline constexpr std::uint32_t kFeedMagic = 0x6675734f;
/// Bytes of the largest feed that is read.
inline constexpr std::uint32_t kLargestFeed = 64 * 1024;

/// Texts end with a zero.
struct FeedRequest
{
    std::uint32_t magic = kFeedMagic;
    std::array<char, 1024> address{};
    std::array<char, 64> userAgent{};
};

/// The payload is the body of an answer with status 200, or the reason of a failure.
struct FeedReply
{
    std::uint32_t magic = kFeedMagic;
    FeedOutcome outcome = FeedOutcome::Failed;
    std::int32_t status = 0;
    std::uint32_t byteSize = 0; ///< of the payload; kLargestFeed at most
};

} // namespace ostrelle
