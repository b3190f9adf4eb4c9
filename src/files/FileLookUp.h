#pragma once

#include <QByteArray>
#include <QList>

namespace ostrelle {

/// The questions to the file system, each of which may hang for ever. Called from several threads at once.
class FileLookUp
{
public:
    struct Entry
    {
        enum class Kind {
            Missing,
            Unreachable, ///< it cannot be told, now or by this user
            Regular,
            Folder,
            Link,
            Special
        };

        Kind kind = Kind::Missing;
        QByteArray target; ///< of a link, as it is written in it
    };

    virtual ~FileLookUp() = default;

    /// What stands at `path` itself: a link is not followed.
    virtual Entry entry(const QByteArray &path) const = 0;
    /// Absolute paths of everything that is mounted.
    virtual QList<QByteArray> mountPoints() const = 0;
};

} // namespace ostrelle
