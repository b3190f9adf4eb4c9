#include "command/FilePaths.h"

#include "records/PathText.h"

#include <QDir>
#include <QFileInfo>

namespace ostrelle {

namespace {

// A request is one line of at most a mebibyte, and a character takes up to six bytes in it.
constexpr qsizetype kPortion = 128 * 1024;

bool isTaken(const QString &path, PathKind kind)
{
    const QFileInfo file(path);
    return kind == PathKind::Folder ? file.isDir() : file.exists();
}

} // namespace

QStringList existingPaths(const QStringList &words, PathKind kind, const std::function<void(const QString &)> &refuse)
{
    QStringList paths;
    for (const QString &word : words) {
        const QString path = standardizedPath(QDir::current().absoluteFilePath(word));
        if (!word.isEmpty() && isTaken(path, kind))
            paths.append(path);
        else
            refuse(word);
    }
    return paths;
}

QList<QStringList> requestPortions(const QStringList &paths)
{
    QList<QStringList> portions;
    qsizetype length = kPortion;
    for (const QString &path : paths) {
        length += path.size();
        if (length > kPortion) {
            portions.append(QStringList());
            length = path.size();
        }
        portions.last().append(path);
    }
    return portions;
}

} // namespace ostrelle
