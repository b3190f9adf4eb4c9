#include "foundation/AtomicFile.h"

#include "foundation/FileDescriptor.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ostrelle {
namespace {

QString reason(const char *what)
{
    const int error = errno;
    return QLatin1String(what) + QStringLiteral(": ") + qt_error_string(error);
}

/// A new file that goes away again unless it was renamed.
class TemporaryFile
{
public:
    explicit TemporaryFile(const QByteArray &pattern)
        : m_path(pattern)
        , m_descriptor(::mkostemp(m_path.data(), O_CLOEXEC))
        , m_exists(static_cast<bool>(m_descriptor))
    {
    }
    ~TemporaryFile()
    {
        if (m_exists)
            ::unlink(m_path.constData());
    }
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    bool exists() const { return m_exists; }
    bool write(const QByteArray &bytes)
    {
        for (qsizetype done = 0; done < bytes.size();) {
            const ssize_t written =
                ::write(m_descriptor.get(), bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
            if (written < 0 && errno == EINTR)
                continue;
            if (written < 0)
                return false;
            done += written;
        }
        return true;
    }
    /// Some file systems report only when a file is closed that bytes were lost.
    bool syncAndClose() { return ::fsync(m_descriptor.get()) == 0 && ::close(m_descriptor.release()) == 0; }
    bool moveTo(const QByteArray &path)
    {
        if (::rename(m_path.constData(), path.constData()) != 0)
            return false;
        m_exists = false;
        return true;
    }

private:
    QByteArray m_path;
    FileDescriptor m_descriptor;
    bool m_exists;
};

constexpr qsizetype kRandomLetters = 6; // mkostemp's

QString temporaryPrefix(const QFileInfo &file)
{
    return u'.' + file.fileName() + u'.';
}

QString unreadablePrefix(const QFileInfo &file)
{
    return file.completeBaseName() + QStringLiteral(".unreadable-");
}

} // namespace

std::optional<QString> writeFileAtomically(const QString &path, const QByteArray &bytes)
{
    const QFileInfo file(path);
    const QString folder = file.absolutePath();
    const FileDescriptor folderDescriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folderDescriptor)
        return reason("cannot open the folder");

    const QString pattern = folder + u'/' + temporaryPrefix(file) + QString(kRandomLetters, u'X');
    TemporaryFile temporary(QFile::encodeName(pattern));
    if (!temporary.exists())
        return reason("cannot create a file");
    if (!temporary.write(bytes))
        return reason("cannot write");
    if (!temporary.syncAndClose())
        return reason("cannot sync");
    if (!temporary.moveTo(QFile::encodeName(file.absoluteFilePath())))
        return reason("cannot replace the file");
    // EINVAL: a file system whose folders cannot be synced.
    if (::fsync(folderDescriptor.get()) != 0 && errno != EINVAL)
        return reason("cannot sync the folder");
    return std::nullopt;
}

void removeUnfinishedWrites(const QString &path)
{
    const QFileInfo file(path);
    QDir folder(file.absolutePath());
    const QString prefix = temporaryPrefix(file);
    const QStringList hidden = folder.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QString &name : hidden) {
        if (name.startsWith(prefix) && name.size() == prefix.size() + kRandomLetters)
            folder.remove(name);
    }
}

QString unreadableName(const QString &path)
{
    const QFileInfo file(path);
    const QString time = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    const QString stem = file.absolutePath() + u'/' + unreadablePrefix(file) + time;
    const QString ending = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    QString aside = stem + ending;
    for (int copy = 2; QFileInfo::exists(aside); ++copy)
        aside = stem + u'-' + QString::number(copy) + ending;
    return aside;
}

std::optional<QString> setAsideUnreadable(const QString &path)
{
    const QString aside = unreadableName(path);
    const QByteArray name = QFile::encodeName(aside);
    if (::rename(QFile::encodeName(path).constData(), name.constData()) != 0)
        return errno == ENOENT ? std::optional(QString()) : std::nullopt;
    // Of a link the target keeps its mode.
    ::fchmodat(AT_FDCWD, name.constData(), S_IRUSR | S_IWUSR, AT_SYMLINK_NOFOLLOW);
    return aside;
}

bool removeUnreadable(const QString &path)
{
    const QFileInfo file(path);
    QDir folder(file.absolutePath());
    const QString prefix = unreadablePrefix(file);
    bool areGone = true;
    for (const QString &name : folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::System)) {
        if (name.startsWith(prefix) && QFileInfo(name).suffix() == file.suffix())
            areGone = folder.remove(name) && areGone;
    }
    return areGone;
}

} // namespace ostrelle
