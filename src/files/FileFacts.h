#pragma once

namespace ostrelle {

/// What stands at a path.
struct FileFacts
{
    enum class Kind {
        Unknown, ///< not answered (yet): counts as present
        Missing, ///< nothing, or a link that leads to nothing
        Regular,
        Folder,
        Special ///< a device, a FIFO, a socket: never to be opened
    };

    Kind kind = Kind::Unknown; ///< of what a link leads to, too
    bool isLink = false;       ///< the path itself names a symbolic link

    bool isPresent() const { return kind != Kind::Missing; }
    bool isFolder() const { return kind == Kind::Folder; }
    /// Whether its contents may be read for a picture of it.
    bool isPlainFile() const { return kind == Kind::Regular && !isLink; }

    friend bool operator==(const FileFacts &, const FileFacts &) = default;
};

} // namespace ostrelle
