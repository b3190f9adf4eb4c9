#pragma once

#include "media_helper/FileKind.h"
#include "media_helper/ImageFacts.h"
#include "media_helper/PictureCommands.h"

#include <cstdint>
#include <span>

namespace ostrelle {

/// Which library answers for a kind of file.
struct ImageFactsRow
{
    FileKind kind;
    ReadImageFacts *facts;
    bool isShared = false; ///< what it knows nothing of may be another helper's
};

struct ImageFactsTable
{
    std::span<const ImageFactsRow> rows;
    UnknownKinds others =
        UnknownKinds::Refuse;   ///< what to do with kinds without a row, and what shared rows know nothing of
    std::uint64_t mostRead = 0; ///< bytes that are read of any file
};

/// Answers with the object that imageInfoFromJson() reads.
CommandAnswer answerImageInfo(ByteSource &source, const HelperRequest &request, const ImageFactsTable &table);

} // namespace ostrelle
