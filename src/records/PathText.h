#pragma once

#include <QString>
#include <QStringView>

namespace ostrelle {

/// The last component of an absolute path, also of one that ends in slashes; "/" for the root.
QStringView lastPathComponent(QStringView path);

/// `path` without ".", ".." and double slashes, resolved in the text alone: symbolic links stay, nothing is asked of
/// the file system. ".." of the root is the root.
QString standardizedPath(const QString &path);

} // namespace ostrelle
