#pragma once

#include "media_common/HelperProtocol.h"
#include "media_helper/Decoders.h"
#include "media_helper/FileKind.h"

#include <cstdint>
#include <span>
#include <vector>

namespace ostrelle {

class ByteSource;

/// Which library answers for a kind of file.
struct DecoderRow
{
    FileKind kind;
    Decode *decode;
};

/// What a command answers; the header's identity and size are filled in by who sends it.
struct CommandAnswer
{
    HelperAnswer header;
    std::vector<std::uint8_t> payload;
};

/// What to do with kinds that are not in the table.
enum class UnknownKinds { Decline, Refuse };

struct DecoderTable
{
    std::span<const DecoderRow> rows;
    UnknownKinds others = UnknownKinds::Refuse;
};

CommandAnswer answerThumbnail(ByteSource &source, const HelperRequest &request, const DecoderTable &decoders);
CommandAnswer answerToPng(ByteSource &source, const HelperRequest &request, const DecoderTable &decoders);

} // namespace ostrelle
