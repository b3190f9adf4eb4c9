#include "files/SystemLookUp.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrelle {
namespace {

constexpr qsizetype kMountPointField = 4;

QByteArray linkTarget(const QByteArray &path)
{
    QByteArray target(PATH_MAX, Qt::Uninitialized);
    const ssize_t length = ::readlink(path.constData(), target.data(), static_cast<std::size_t>(target.size()));
    target.truncate(length > 0 ? length : 0);
    return target;
}

/// Blanks and backslashes of a path stand in the table as a backslash and three octal digits.
QByteArray unescaped(const QByteArray &field)
{
    QByteArray path;
    for (qsizetype i = 0; i < field.size(); ++i) {
        bool isOctal = false;
        const int code = field[i] == '\\' ? field.mid(i + 1, 3).toInt(&isOctal, 8) : 0;
        path += isOctal ? static_cast<char>(code) : field[i];
        i += isOctal ? 3 : 0;
    }
    return path;
}

} // namespace

FileLookUp::Entry SystemLookUp::entry(const QByteArray &path) const
{
    struct stat status = {};
    if (::lstat(path.constData(), &status) != 0) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG;
        return {isMissing ? Entry::Kind::Missing : Entry::Kind::Unreachable, {}};
    }
    if (S_ISREG(status.st_mode))
        return {Entry::Kind::Regular, {}};
    if (S_ISDIR(status.st_mode))
        return {Entry::Kind::Folder, {}};
    if (S_ISLNK(status.st_mode))
        return {Entry::Kind::Link, linkTarget(path)};
    return {Entry::Kind::Special, {}};
}

QList<QByteArray> SystemLookUp::mountPoints() const
{
    QFile table(QStringLiteral("/proc/self/mountinfo"));
    QList<QByteArray> points;
    if (!table.open(QIODevice::ReadOnly))
        return points;
    const QList<QByteArray> lines = table.readAll().split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split(' ');
        if (fields.size() > kMountPointField)
            points.append(unescaped(fields[kMountPointField]));
    }
    return points;
}

} // namespace ostrelle
