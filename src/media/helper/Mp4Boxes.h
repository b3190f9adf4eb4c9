#pragma once

#include "media_helper/ByteSource.h"

#include <initializer_list>
#include <optional>
#include <string_view>

namespace ostrelle {

/// One box of an MP4 file (ISO/IEC 14496-12, 4.2).
struct Mp4Box
{
    std::uint32_t type = 0;
    std::uint64_t begin = 0; ///< of its content
    std::uint64_t end = 0;
};

/// The type that four letters name.
constexpr std::uint32_t mp4Type(std::string_view letters)
{
    std::uint32_t type = 0;
    for (const char letter : letters)
        type = type << 8U | static_cast<unsigned char>(letter);
    return type;
}

/// The boxes that lie side by side from one place of a file to another. Boxes are only hopped over, so that those with
/// sound, tables and pictures cost nothing.
class Mp4Walk
{
public:
    Mp4Walk(ByteSource &source, std::uint64_t begin, std::uint64_t end)
        : m_source(source)
        , m_at(begin)
        , m_end(end)
    {
    }
    /// Those inside of `parent`, behind `skipped` bytes of its own fields.
    Mp4Walk(ByteSource &source, const Mp4Box &parent, std::uint64_t skipped = 0)
        : Mp4Walk(source, parent.begin + skipped, parent.end)
    {
    }

    /// Nothing at the end, and where the boxes do not fit. One that is said to reach beyond the end is cut there.
    std::optional<Mp4Box> next();
    /// The next of this type.
    std::optional<Mp4Box> next(std::string_view type);

private:
    ByteSource &m_source;
    std::uint64_t m_at;
    std::uint64_t m_end;
};

/// The first box inside of `parent` that `path` leads to, one type after the other.
std::optional<Mp4Box> findMp4Box(ByteSource &source, const Mp4Box &parent,
                                 std::initializer_list<std::string_view> path);

} // namespace ostrelle
