#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace ostrelle {

/// Which paths a command takes.
enum class PathKind { Any, Folder };

/// The standardised absolute paths of what `words` name, seen from the working directory, that exist and are of the
/// kind. Each other word is told to `refuse`. Asks the file system and waits for it.
QStringList existingPaths(const QStringList &words, PathKind kind,
                          const std::function<void(const QString &word)> &refuse);

/// `paths` in portions, in order, of which each fits into one request to the running program.
QList<QStringList> requestPortions(const QStringList &paths);

} // namespace ostrelle
