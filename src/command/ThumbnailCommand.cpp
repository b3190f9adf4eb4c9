#include "command/ThumbnailCommand.h"

#include "command/CommandLine.h"
#include "command/Output.h"
#include "foundation/AppPaths.h"
#include "foundation/SystemTaskScheduler.h"
#include "media_client/MediaClient.h"
#include "media_common/PngEncoder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QSaveFile>

#include <optional>

namespace ostrelle {
namespace {

constexpr int kDefaultSide = 256;
/// Small pictures gain little from more.
constexpr int kCompression = 2;

QString reasonOf(MediaFailure failure)
{
    switch (failure) {
    case MediaFailure::NotAFile:
        return QStringLiteral("is no file");
    case MediaFailure::Unreadable:
        return QStringLiteral("cannot be read");
    case MediaFailure::Unsupported:
        return QStringLiteral("is of no kind that has a picture");
    case MediaFailure::NoPicture:
        return QStringLiteral("has no picture in it");
    case MediaFailure::TooLarge:
        return QStringLiteral("is too large a picture");
    case MediaFailure::TimedOut:
        return QStringLiteral("takes too long");
    case MediaFailure::HelperMissing:
        return QStringLiteral("cannot be read: what was to read it failed");
    default:
        return QStringLiteral("is broken");
    }
}

PictureResult pictureOf(const QString &path, int side)
{
    SystemTaskScheduler scheduler;
    MediaClient client(scheduler, {QCoreApplication::applicationDirPath(), AppPaths::thumbnails()});
    PictureResult answer = MediaFailure::HelperLost;
    const MediaRequest request =
        client.thumbnail(path, side, MediaClient::CacheUse::None, [&answer](const PictureResult &result) {
            answer = result;
            QCoreApplication::quit();
        });
    QCoreApplication::exec();
    return answer;
}

/// PNG has no premultiplied pixels.
QByteArray unpremultiplied(QByteArray pixels)
{
    auto *bytes = reinterpret_cast<quint8 *>(pixels.data());
    for (qsizetype i = 0; i < pixels.size(); i += 4) {
        const int alpha = bytes[i + 3];
        for (qsizetype c = i; c < i + 3 && alpha > 0 && alpha < 255; ++c)
            bytes[c] = static_cast<quint8>(std::min(255, (bytes[c] * 255 + alpha / 2) / alpha));
    }
    return pixels;
}

std::optional<QString> writePng(const QString &path, const MediaPicture &picture)
{
    const QByteArray rgba = unpremultiplied(picture.pixels);
    PngOptions options;
    options.compression = kCompression;
    const auto png =
        encodePng({picture.width, picture.height, reinterpret_cast<const std::uint8_t *>(rgba.constData())}, options);
    if (!png)
        return QStringLiteral("cannot be encoded");
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    const bool isWritten =
        file.open(QIODevice::WriteOnly) &&
        file.write(reinterpret_cast<const char *>(png->data()), qint64(png->size())) == qint64(png->size()) &&
        file.commit();
    return isWritten ? std::nullopt : std::optional(file.errorString());
}

} // namespace

ExitStatus runThumbnail(const Invocation &invocation)
{
    bool isNumber = true;
    const QString sizeText = invocation.options.value(QStringLiteral("--size"), QString::number(kDefaultSide));
    const int side = sizeText.toInt(&isNumber);
    if (!isNumber || side < 1 || side > MediaClient::kLongestSide)
        return fail(ExitStatus::WrongUsage, QStringLiteral("thumbnail: N is a number from 1 to %1, not %2")
                                                .arg(QString::number(MediaClient::kLongestSide), printable(sizeText)));
    const QString name = invocation.arguments.first();
    // Who names a link by hand means what it leads to.
    const QString path = QFileInfo(name).canonicalFilePath();
    const PictureResult result = path.isEmpty() ? MediaFailure::NotAFile : pictureOf(path, side);
    if (const auto *failure = std::get_if<MediaFailure>(&result))
        return fail(ExitStatus::Failed, QStringLiteral("thumbnail: %1 %2").arg(printable(name), reasonOf(*failure)));
    const QString output = invocation.options.value(QStringLiteral("--output"));
    if (const auto problem = writePng(output, std::get<MediaPicture>(result)))
        return fail(ExitStatus::Failed, QStringLiteral("thumbnail: %1: %2").arg(printable(output), *problem));
    return ExitStatus::Done;
}

} // namespace ostrelle
