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

/// A free name under which an undecodable file is kept aside: "NAME.unreadable-YYYYMMDD-HHMMSS[-N].EXT" beside it.
QString unreadableName(const QString &path);
/// Renames the file to unreadableName(), for this user only, and returns that; empty when there is no file any more.
/// Nothing when it cannot be renamed.
std::optional<QString> setAsideUnreadable(const QString &path);
/// Removes every file that was kept aside for `path`; false when one is left. Only for who holds the lock of its
/// folder.
bool removeUnreadable(const QString &path);

} // namespace ostrelle
