#include "foundation/AppPaths.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace ostrelle::AppPaths {
namespace {

constexpr QLatin1StringView kFolderName("Ostrelle");

/// A base folder as the XDG base directory specification has it: a relative path in the variable is ignored.
QString baseFolder(const char *variable, const QString &belowHome)
{
    const QString stated = qEnvironmentVariable(variable);
    return QDir::isAbsolutePath(stated) ? QDir::cleanPath(stated) : QDir::homePath() + belowHome;
}

bool isOwnFolder(const QString &path)
{
    struct stat facts = {};
    return ::stat(QFile::encodeName(path).constData(), &facts) == 0 && S_ISDIR(facts.st_mode) &&
           facts.st_uid == ::geteuid();
}

bool fitsSocketAddress(const QString &path)
{
    return static_cast<std::size_t>(QFile::encodeName(path).size()) < sizeof(sockaddr_un::sun_path);
}

bool makePrivate(const QByteArray &folder)
{
    struct stat entry = {};
    struct stat target = {};
    if (::lstat(folder.constData(), &entry) != 0 || ::stat(folder.constData(), &target) != 0)
        return false;
    if (entry.st_uid != ::geteuid() || target.st_uid != ::geteuid() || !S_ISDIR(target.st_mode))
        return false;
    constexpr mode_t kForOthers = S_IRWXG | S_IRWXO;
    // What lies on a read-only mount stays as it is.
    return (target.st_mode & kForOthers) == 0 || ::chmod(folder.constData(), S_IRWXU) == 0 || errno == EROFS;
}

} // namespace

QString support()
{
    return baseFolder("XDG_DATA_HOME", QStringLiteral("/.local/share")) + u'/' + kFolderName;
}

QString defaultsFile()
{
    return baseFolder("XDG_CONFIG_HOME", QStringLiteral("/.config")) + u'/' + kFolderName +
           QStringLiteral("/defaults.json");
}

QString thumbnails()
{
    return baseFolder("XDG_CACHE_HOME", QStringLiteral("/.cache")) + QStringLiteral("/thumbnails");
}

QString controlSocket()
{
    const QString name = QStringLiteral("/control");
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    // After su or sudo the variable may still name the folder of another user.
    const bool hasRuntime = QDir::isAbsolutePath(runtime) && isOwnFolder(runtime);
    const QString path = hasRuntime ? QDir::cleanPath(runtime) + QStringLiteral("/ostrelle") + name : support() + name;
    return fitsSocketAddress(path) ? path : QStringLiteral("/tmp/ostrelle-%1").arg(::geteuid()) + name;
}

bool ensurePrivateFolder(const QString &path)
{
    const QString whole = QDir::cleanPath(path);
    if (!QDir::isAbsolutePath(whole))
        return false;
    for (qsizetype end = whole.indexOf(u'/', 1); end > 0; end = whole.indexOf(u'/', end + 1))
        ::mkdir(QFile::encodeName(whole.left(end)).constData(), S_IRWXU);
    const QByteArray folder = QFile::encodeName(whole);
    ::mkdir(folder.constData(), S_IRWXU);
    return makePrivate(folder);
}

} // namespace ostrelle::AppPaths
