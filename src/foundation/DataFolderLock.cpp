#include "foundation/DataFolderLock.h"

#include "foundation/AppPaths.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace ostrelle {
namespace {

FileDescriptor openLockFile(const QByteArray &path)
{
    constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW;
    FileDescriptor file(::open(path.constData(), O_RDWR | O_CREAT | kFlags, S_IRUSR | S_IWUSR));
    // On a read-only mount a lock file that exists still tells who is there.
    if (!file && errno == EROFS)
        file.reset(::open(path.constData(), O_RDONLY | kFlags));
    return file;
}

} // namespace

std::optional<DataFolderLock> DataFolderLock::tryTake(const QString &folder, Failure *failure)
{
    const auto fail = [failure](Failure why) {
        if (failure)
            *failure = why;
        return std::nullopt;
    };
    if (!AppPaths::ensurePrivateFolder(folder))
        return fail(Failure::Unavailable);
    FileDescriptor file = openLockFile(QFile::encodeName(folder + QStringLiteral("/lock")));
    if (!file)
        return fail(Failure::Unavailable);
    int result = 0;
    do {
        result = ::flock(file.get(), LOCK_EX | LOCK_NB);
    } while (result != 0 && errno == EINTR);
    if (result != 0)
        return fail(errno == EWOULDBLOCK ? Failure::HeldByOther : Failure::Unavailable);
    return DataFolderLock(std::move(file));
}

DataFolderLock DataFolderLock::adopt(int descriptor)
{
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    return DataFolderLock(FileDescriptor(descriptor));
}

int DataFolderLock::passOn()
{
    ::fcntl(m_descriptor.get(), F_SETFD, 0);
    return m_descriptor.release();
}

} // namespace ostrelle
