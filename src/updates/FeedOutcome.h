#pragma once

#include <cstdint>

namespace ostrelle {

/// How a request for the update feed ended.
enum class FeedOutcome : std::uint32_t {
    Answered,   ///< with a status and, if that is 200, a body
    Unreadable, ///< not HTTP, or larger than any feed
    Failed,     ///< there is a reason in words
};

} // namespace ostrelle
