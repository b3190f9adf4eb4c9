#pragma once

#include "records/StoredClip.h"

#include <QString>

#include <functional>
#include <optional>

namespace ostrelle {

/// `clipboard.json` as it was found.
struct ClipArray
{
    enum class State {
        Missing,
        Undecodable, ///< or unreadable: there is something, and it must not be destroyed
        Good
    };

    State state = State::Missing;
    StoredClips clips;
    std::shared_ptr<const FileDescriptor> file; ///< Good: the open file
    qint64 size = 0;
};

ClipArray readClipArray(const QString &path);

/// What came of writing.
struct ClipArrayWritten
{
    std::shared_ptr<const FileDescriptor> file; ///< the new file when it has taken the place, else null
    qint64 size = 0;
    QString failure; ///< empty when everything is on the disk
};

/// Replaces the array by `clips`, in one step. Records that lie in a file already are copied from there. When the new
/// file is in place, `clips` refer to it. `beforeReplacing` runs when the new file is complete; its failure is one.
ClipArrayWritten writeClipArray(const QString &path, StoredClips &clips, const std::function<bool()> &beforeReplacing);

} // namespace ostrelle
