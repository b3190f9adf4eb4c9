#include "media_helper/ByteSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace ostrelle {
namespace {

constexpr std::size_t kWindow = 64 * 1024;

} // namespace

std::vector<std::uint8_t> ByteSource::whole(std::uint64_t limit)
{
    if (size() > limit)
        return {};
    std::vector<std::uint8_t> bytes(size());
    bytes.resize(readAt(0, bytes));
    return bytes;
}

FileSource::FileSource(int descriptor)
    : m_descriptor(descriptor)
{
    // Not fstat(): the C library makes it a call that could ask for any file by its path.
    const off_t end = ::lseek(descriptor, 0, SEEK_END);
    m_size = end > 0 ? static_cast<std::uint64_t>(end) : 0;
}

std::size_t FileSource::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer)
{
    if (buffer.empty() || buffer.size() >= kWindow)
        return readFile(offset, buffer);
    const bool isInside = offset >= m_windowBegin && offset + buffer.size() <= m_windowBegin + m_window.size();
    if (!isInside) {
        m_window.resize(kWindow);
        m_windowBegin = offset;
        m_window.resize(readFile(offset, m_window));
    }
    const std::size_t start = static_cast<std::size_t>(offset - m_windowBegin);
    const std::size_t count = std::min(buffer.size(), m_window.size() - start);
    std::memcpy(buffer.data(), m_window.data() + start, count);
    return count;
}

std::size_t FileSource::readFile(std::uint64_t offset, std::span<std::uint8_t> buffer) const
{
    std::size_t done = 0;
    while (done < buffer.size() && offset + done < m_size) {
        const ssize_t count =
            ::pread(m_descriptor, buffer.data() + done, buffer.size() - done, static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

std::size_t MemorySource::readAt(std::uint64_t offset, std::span<std::uint8_t> buffer)
{
    if (offset >= m_bytes.size() || buffer.empty())
        return 0;
    const std::size_t count = std::min(buffer.size(), m_bytes.size() - static_cast<std::size_t>(offset));
    std::memcpy(buffer.data(), m_bytes.data() + offset, count);
    return count;
}

std::size_t ByteReader::read(std::span<std::uint8_t> buffer)
{
    const std::size_t count = m_source.readAt(m_position, buffer);
    m_position += count;
    return count;
}

} // namespace ostrelle
