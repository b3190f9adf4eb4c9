#pragma once

#include "media_helper/AudioStream.h"
#include "media_helper/FileKind.h"

#include <cstddef>
#include <span>

namespace ostrelle {

/// Which library decodes which kind of file.
struct AudioRow
{
    FileKind kind;
    OpenAudio *open;
};

/// What a player can decode.
struct AudioTable
{
    std::span<const AudioRow> rows;
    OpenAudio *others = nullptr;  ///< tried where no row names the kind; null: they are declined
    std::size_t addressSpace = 0; ///< bytes that decoding may take
};

/// The whole life of the process that decodes: shuts itself in, then serves one file from its standard input until that
/// closes. Returns the exit status.
int serveDecoder(const AudioTable &table);

} // namespace ostrelle
