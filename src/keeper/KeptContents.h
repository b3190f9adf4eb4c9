#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ostrelle {

/// What is kept, as the ending program sends it.
struct KeptContents
{
    struct Content
    {
        std::vector<std::string> types; ///< names under which it is served
        std::vector<std::uint8_t> bytes;
    };

    std::uint32_t expectedOwner = 0; ///< window to take the selection from
    std::vector<Content> contents;

    /// Reads all of it from a socket: two numbers, the expected owner and the number of contents; for each content the
    /// length of its type names, the length of its bytes, the names joined by line feeds, and the bytes. Numbers are 32
    /// bits in the machine's order. Nothing when it ends early or is too large to be true.
    static std::optional<KeptContents> receive(int socket);
};

} // namespace ostrelle
