#pragma once

#include "media_helper/ByteSource.h"

#include <optional>

namespace ostrelle {

/// The bytes that an ID3v2 tag at `offset` takes, with its header; 0 when there is none.
std::uint64_t id3TagSize(ByteSource &source, std::uint64_t offset);

/// The tempo that the tag at `offset` states, see tempoFromText(). Frames of other kinds are not read.
std::optional<double> id3Tempo(ByteSource &source, std::uint64_t offset);

} // namespace ostrelle
