#pragma once

#include <cstdint>

namespace ostrelle {

class ByteSource;

/// Where the sound of a bare stream ends, before ID3v1, APE, Lyrics3 and appended ID3v2 tags.
std::uint64_t endBeforeTags(ByteSource &source);

} // namespace ostrelle
