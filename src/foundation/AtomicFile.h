#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ostrelle {

/// Replaces `path` by `bytes` so that at every moment either the old or the new file is whole: temporary file (mode
/// 0600) in the same folder, every write checked, fsync of file and folder, rename. Returns the reason of a failure
/// (old file left whole, temporary file removed), or nothing when it is done. Any thread; blocks for the disk.
[[nodiscard]] std::optional<QString> writeFileAtomically(const QString &path, const QByteArray &bytes);

/// Removes the temporary files that a killed process left beside `path`. Only for who is alone in writing it (holds the
/// lock of its folder).
void removeUnfinishedWrites(const QString &path);

/// The name under which an undecodable file is kept aside: "NAME.unreadable-YYYYMMDD-HHMMSS[-N].EXT" beside it. Renames
/// it there and returns the new path, or nothing when there was no file or the rename failed.
std::optional<QString> setAsideUnreadable(const QString &path);

} // namespace ostrelle
