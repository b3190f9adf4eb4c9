#pragma once

#include "media_helper/AudioStream.h"
#include "media_helper/FileKind.h"
#include "media_helper/PictureCommands.h"

#include <span>

namespace ostrelle {

/// Which library reads the sound of a kind of file.
struct AudioRow
{
    FileKind kind;
    OpenAudio *open;
};

struct AudioTable
{
    std::span<const AudioRow> rows;
    /// What to do with kinds without a row, and what a row's library does not know.
    UnknownKinds others = UnknownKinds::Refuse;
};

/// Listens to the file: a JSON object with the tempo as "bpm", or an empty one when it has none.
CommandAnswer answerTempo(ByteSource &source, const AudioTable &table);

} // namespace ostrelle
