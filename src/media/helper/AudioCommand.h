#pragma once

#include "media_helper/AudioFacts.h"
#include "media_helper/FileKind.h"
#include "media_helper/PictureCommands.h"

#include <span>

namespace ostrelle {

/// Which library answers for a kind of file.
struct AudioFactsRow
{
    FileKind kind;
    ReadAudioFacts *facts;
    ReadTempoTag *tempo = nullptr; ///< of tags within the file; an ID3v2 tag before it is always looked into
};

struct AudioFactsTable
{
    std::span<const AudioFactsRow> rows;
    UnknownKinds others = UnknownKinds::Refuse; ///< what to do with kinds without a row, and what rows know nothing of
    std::uint64_t mostRead = 0;                 ///< bytes that are read of any file
};

/// Answers with the object that audioInfoFromJson() reads.
CommandAnswer answerAudioInfo(ByteSource &source, const AudioFactsTable &table);

} // namespace ostrelle
