#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>

#include <xcb/xcb.h>

namespace ostrelle {

struct XcbFreed
{
    void operator()(void *memory) const { std::free(memory); }
};

/// Owns what an xcb_…_reply() or xcb_poll_…() call returned.
template <typename Reply>
using XcbReply = std::unique_ptr<Reply, XcbFreed>;

/// The numbers, atoms or windows in a property; empty when it is missing or of another format.
inline std::span<const std::uint32_t> propertyWords(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto *words = static_cast<const std::uint32_t *>(xcb_get_property_value(reply));
    return {words, static_cast<std::size_t>(xcb_get_property_value_length(reply)) / sizeof(std::uint32_t)};
}

/// The bytes of a property; empty when it is missing or of another format.
inline std::span<const char> propertyBytes(const xcb_get_property_reply_t *reply)
{
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char *>(xcb_get_property_value(reply)),
            static_cast<std::size_t>(xcb_get_property_value_length(reply))};
}

} // namespace ostrelle
