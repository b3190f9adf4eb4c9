#include "inspectors/ImageInspector.h"

#include "files/ThumbnailSource.h"
#include "inspectors/FactSource.h"
#include "media_client/MediaKind.h"
#include "records/RecentFile.h"

namespace ostrelle {

ImageInspector::ImageInspector(const Surroundings &surroundings, FactSource &facts, ThumbnailSource &thumbnails,
                               QObject *parent)
    : FileInspector(surroundings, QString(kImageRecentsKey), parent)
    , m_facts(facts)
    , m_thumbnails(thumbnails)
{
}

bool ImageInspector::supports(const QString &path)
{
    return mediaKindOf(path) == MediaKind::Image;
}

void ImageInspector::load(const QString &path)
{
    if (!supports(path)) {
        reject();
        return;
    }
    awaitFacts(m_facts.imageInfo(path, [this, path](const auto &info) { take(QString(path), info); }),
               [this, path] { take(QString(path), std::nullopt); });
}

void ImageInspector::take(const QString &path, const std::optional<ImageInfo> &info)
{
    ImageInspection shown;
    if (info) {
        shown.info = info;
        shown.path = path;
    }
    settle();
    if (!shown.info) {
        reject();
        return;
    }
    // Loaded again, it shows what it had until there is something newer.
    if (shown.path == inspection().path)
        shown.thumbnail = inspection().thumbnail;
    m_inspection = shown;
    m_thumbnailRequest = m_thumbnails.request(shown.path, kThumbnailSize, this, [this](const QImage &thumbnail) {
        ImageInspection complete = inspection();
        complete.thumbnail = thumbnail;
        m_inspection = complete;
    });
    accept(shown.path,
           QStringLiteral("%1 × %2 · ").arg(shown.info->pixelWidth).arg(shown.info->pixelHeight) + shown.info->format);
}

void ImageInspector::clear()
{
    abandon();
    m_thumbnailRequest.cancel();
    m_inspection = ImageInspection();
}

} // namespace ostrelle
