#pragma once

#include "media_helper/Mp4Boxes.h"

#include <optional>

namespace ostrelle {

/// The "moov" box of the file; nothing when it is no MP4 file, or has none.
std::optional<Mp4Box> findMovie(ByteSource &source);

/// How many samples there are to be heard by the comment that Apple's encoders leave ("iTunSMPB").
std::optional<std::uint64_t> commentedSamples(ByteSource &source, const Mp4Box &movie);

} // namespace ostrelle
