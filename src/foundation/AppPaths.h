#pragma once

#include <QString>

namespace ostrelle {

/// Where the program keeps things. Pure look-ups; ensurePrivateFolder() creates.
namespace AppPaths {

/// $XDG_DATA_HOME/Ostrelle: the stores and the lock.
QString support();
/// $XDG_CONFIG_HOME/Ostrelle/defaults.json
QString defaultsFile();
/// $XDG_CACHE_HOME/thumbnails: the desktop's, shared with other programs.
QString thumbnails();
/// The control socket: $XDG_RUNTIME_DIR/ostrelle/control where that folder exists and is ours, else support()/control.
/// A path that would not fit into a socket address falls back to the same name below /tmp/ostrelle-UID.
QString controlSocket();

/// Creates the folder and its parents with mode 0700 where they are missing. A folder that exists has its access taken
/// from everybody else; false when it cannot be made, belongs to another user, or is reached by another user's link.
bool ensurePrivateFolder(const QString &path);

} // namespace AppPaths
} // namespace ostrelle
