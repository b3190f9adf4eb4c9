#include "media_client/DesktopThumbnails.h"

#include "foundation/AppPaths.h"
#include "media_client/PngMarks.h"
#include "media_common/PngEncoder.h"

#include <QCryptographicHash>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <utility>

namespace ostrelle {
namespace {

constexpr char kUriKey[] = "Thumb::URI";
constexpr char kModifiedKey[] = "Thumb::MTime";
constexpr char kSoftware[] = "ostrelle-" OSTRELLE_VERSION;
constexpr int kCompression = 2;

struct Kind
{
    int side;
    const char *folder;
};
constexpr std::array kKinds{Kind{128, "normal"}, Kind{256, "large"}, Kind{512, "x-large"}, Kind{1024, "xx-large"}};

QString failureFolder()
{
    return QStringLiteral("fail/") + QLatin1String(kSoftware);
}

FileDescriptor openOwnFile(const QString &path)
{
    FileDescriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat facts = {};
    if (file && (::fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode) || facts.st_uid != ::geteuid()))
        file.reset();
    return file;
}

/// The thumbnail at `path` when it is of the subject.
FileDescriptor matching(const QString &path, const ThumbnailSubject &subject)
{
    FileDescriptor file = openOwnFile(path);
    if (!file)
        return file;
    const PngMarks marks = readPngMarks(file.get(), {kUriKey, kModifiedKey});
    if (marks.value(kUriKey) != subject.uri || marks.value(kModifiedKey) != QByteArray::number(subject.modified))
        file.reset();
    return file;
}

/// Without syncing: a thumbnail that a power cut spoils is made again.
void replaceFile(const QString &path, const std::vector<std::uint8_t> &bytes)
{
    const QByteArray name = QFile::encodeName(path);
    QByteArray temporary = name + ".XXXXXX";
    const FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file)
        return;
    const bool isWritten = ::write(file.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    if (!isWritten || ::rename(temporary.constData(), name.constData()) != 0)
        ::unlink(temporary.constData());
}

} // namespace

QByteArray fileUri(const QString &path)
{
    // RFC 3986: what may stand in a path as it is, beside letters and digits.
    return "file://" + QFile::encodeName(path).toPercentEncoding("/!$&'()*+,=:@");
}

DesktopThumbnails::DesktopThumbnails(QString folder)
    : m_folder(std::move(folder))
{
}

int DesktopThumbnails::sideFor(int side)
{
    for (const Kind &kind : kKinds) {
        if (side <= kind.side)
            return kind.side;
    }
    return kKinds.back().side;
}

bool DesktopThumbnails::contains(const QString &path) const
{
    return path.startsWith(m_folder + u'/');
}

FileDescriptor DesktopThumbnails::find(const ThumbnailSubject &subject, int side) const
{
    for (const Kind &kind : kKinds) {
        if (kind.side < side)
            continue;
        FileDescriptor file = matching(pathIn(QLatin1String(kind.folder), subject), subject);
        if (file)
            return file;
    }
    return {};
}

bool DesktopThumbnails::hasFailure(const ThumbnailSubject &subject) const
{
    return static_cast<bool>(matching(pathIn(failureFolder(), subject), subject));
}

void DesktopThumbnails::store(const ThumbnailSubject &subject, int side, int width, int height,
                              const QByteArray &rgba) const
{
    for (const Kind &kind : kKinds) {
        if (kind.side == side)
            write(QLatin1String(kind.folder), subject, width, height, rgba);
    }
}

void DesktopThumbnails::storeFailure(const ThumbnailSubject &subject) const
{
    write(failureFolder(), subject, 1, 1, QByteArray(4, 0));
}

QString DesktopThumbnails::pathIn(const QString &folder, const ThumbnailSubject &subject) const
{
    const QByteArray digest = QCryptographicHash::hash(subject.uri, QCryptographicHash::Md5).toHex();
    return m_folder + u'/' + folder + u'/' + QString::fromLatin1(digest) + QStringLiteral(".png");
}

void DesktopThumbnails::write(const QString &folder, const ThumbnailSubject &subject, int width, int height,
                              const QByteArray &rgba) const
{
    PngOptions options;
    options.compression = kCompression;
    options.texts = {{kUriKey, subject.uri.toStdString()},
                     {kModifiedKey, std::to_string(subject.modified)},
                     {"Software", kSoftware}};
    const auto png = encodePng({width, height, reinterpret_cast<const std::uint8_t *>(rgba.constData())}, options);
    if (png && AppPaths::ensurePrivateFolder(m_folder) && AppPaths::ensurePrivateFolder(m_folder + u'/' + folder))
        replaceFile(pathIn(folder, subject), *png);
}

} // namespace ostrelle
