#pragma once

#include "foundation/FileDescriptor.h"

#include <QByteArray>
#include <QString>

namespace ostrelle {

/// The URI of an absolute path as every program on the desktop writes it, because its digest names the thumbnail.
QByteArray fileUri(const QString &path);

/// What a thumbnail is of: a file in one state.
struct ThumbnailSubject
{
    QByteArray uri;
    qint64 modified = 0; ///< seconds since 1970
};

/// The desktop's shared cache of thumbnails (freedesktop.org, Thumbnail Managing Standard 0.9). Has no memory of its
/// own. Any thread; blocks for the disk.
class DesktopThumbnails
{
public:
    explicit DesktopThumbnails(QString folder);

    /// The side of the smallest kind of thumbnail that is not smaller than `side` (1 to 1024).
    static int sideFor(int side);

    /// `path` lies in the cache itself; thumbnails have no thumbnails.
    bool contains(const QString &path) const;
    /// The thumbnail of the subject of at least sideFor(side), open for reading; nothing when there is none of this
    /// state. Of the file only the marks are looked at, it is to be decoded with the same care as any other.
    FileDescriptor find(const ThumbnailSubject &subject, int side) const;
    /// This program failed to make a thumbnail of this state before.
    bool hasFailure(const ThumbnailSubject &subject) const;

    /// Pixels of four bytes (red, green, blue, alpha; not premultiplied). `side` is one of sideFor(). They are encoded
    /// here and not by a helper, so that no file can have something put into the cache that other programs then decode.
    void store(const ThumbnailSubject &subject, int side, int width, int height, const QByteArray &rgba) const;
    void storeFailure(const ThumbnailSubject &subject) const;

private:
    QString pathIn(const QString &folder, const ThumbnailSubject &subject) const;
    void write(const QString &folder, const ThumbnailSubject &subject, int width, int height,
               const QByteArray &rgba) const;

    QString m_folder;
};

} // namespace ostrelle
