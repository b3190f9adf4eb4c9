#include "keeper/KeptContents.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <sstream>

namespace ostrelle {

namespace {

constexpr std::uint32_t kMostContents = 64;
constexpr std::uint32_t kLongestTypes = 16 * 1024;
constexpr std::uint32_t kLargestContent = 64 * 1024 * 1024;

bool receiveInto(int socket, void *memory, std::size_t size)
{
    auto *at = static_cast<std::byte *>(memory);
    while (size > 0) {
        const ssize_t got = read(socket, at, size);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        at += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

std::optional<KeptContents::Content> receiveContent(int socket)
{
    std::uint32_t typesLength = 0;
    std::uint32_t bytesLength = 0;
    if (!receiveInto(socket, &typesLength, sizeof typesLength) ||
        !receiveInto(socket, &bytesLength, sizeof bytesLength) || typesLength > kLongestTypes ||
        bytesLength > kLargestContent) {
        return std::nullopt;
    }
    std::string types(typesLength, '\0');
    KeptContents::Content content;
    content.bytes.resize(bytesLength);
    if (!receiveInto(socket, types.data(), typesLength) || !receiveInto(socket, content.bytes.data(), bytesLength)) {
        return std::nullopt;
    }
    std::istringstream lines(types);
    for (std::string type; std::getline(lines, type);) {
        content.types.push_back(type);
    }
    return content;
}

} // namespace

std::optional<KeptContents> KeptContents::receive(int socket)
{
    KeptContents kept;
    std::uint32_t count = 0;
    if (!receiveInto(socket, &kept.expectedOwner, sizeof kept.expectedOwner) ||
        !receiveInto(socket, &count, sizeof count) || count > kMostContents) {
        return std::nullopt;
    }
    for (; count > 0; --count) {
        std::optional<Content> content = receiveContent(socket);
        if (!content) {
            return std::nullopt;
        }
        kept.contents.push_back(std::move(*content));
    }
    return kept;
}

} // namespace ostrelle
