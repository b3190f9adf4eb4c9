#pragma once

#include "records/StoredClip.h"

#include <QByteArrayView>

#include <memory>
#include <optional>

namespace ostrelle {

/// Reads records out of JSON text. Holds the buffers of the parser, so it is meant to be used for many and dropped.
class ClipParser
{
public:
    /// Readable bytes that must follow the text of an object.
    static const qsizetype kPadding;

    ClipParser();
    ~ClipParser();

    /// The record in `object`, the text of one JSON object; its spans count from `object`. Nothing when a required key
    /// is missing or anything has the wrong type. `isCompact`: the caller saw no white space outside of strings.
    std::optional<StoredClip> parse(QByteArrayView object, bool isCompact);

private:
    struct Parser;
    std::unique_ptr<Parser> m_parser;
};

/// The end of the JSON object that begins at `begin` (one past its brace), or null when it does not end before `end`.
/// Looks at brackets and strings only. Clears `isCompact` when it meets white space between tokens.
const char *endOfObject(const char *begin, const char *end, bool &isCompact);

} // namespace ostrelle
