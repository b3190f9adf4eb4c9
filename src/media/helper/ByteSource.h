#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ostrelle {

/// The bytes that a decoder reads, from any place.
class ByteSource
{
public:
    virtual ~ByteSource() = default;

    virtual std::uint64_t size() const = 0;
    /// Reads up to `buffer.size()` bytes from `offset`; returns how many there were: fewer only at the end, or where
    /// the disk fails.
    virtual std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) = 0;

    /// All of it, for libraries that want it in one piece; empty when that is more than `limit`.
    std::vector<std::uint8_t> whole(std::uint64_t limit);
};

/// An open regular file; the descriptor stays the caller's. Small reads come from a window that is read at once,
/// because some libraries ask for a few bytes at a time.
class FileSource final : public ByteSource
{
public:
    explicit FileSource(int descriptor);
    std::uint64_t size() const override { return m_size; }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override;

private:
    std::size_t readFile(std::uint64_t offset, std::span<std::uint8_t> buffer) const;

    int m_descriptor;
    std::uint64_t m_size = 0;
    std::uint64_t m_windowBegin = 0;
    std::vector<std::uint8_t> m_window;
};

/// A picture that was found inside a file.
class MemorySource final : public ByteSource
{
public:
    explicit MemorySource(std::span<const std::uint8_t> bytes)
        : m_bytes(bytes)
    {
    }
    std::uint64_t size() const override { return m_bytes.size(); }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> buffer) override;

private:
    std::span<const std::uint8_t> m_bytes;
};

/// A source with a position, as most libraries read.
class ByteReader
{
public:
    explicit ByteReader(ByteSource &source)
        : m_source(source)
    {
    }
    ByteSource &source() { return m_source; }
    std::uint64_t position() const { return m_position; }
    void seek(std::uint64_t position) { m_position = position; }
    std::size_t read(std::span<std::uint8_t> buffer);

private:
    ByteSource &m_source;
    std::uint64_t m_position = 0;
};

} // namespace ostrelle
