#include "files/MediaThumbnailSource.h"

#include "core/MediaImage.h"

#include <QPointer>

namespace ostrelle {

MediaThumbnailSource::MediaThumbnailSource(MediaClient &client, MediaClient::Links links)
    : m_client(client)
    , m_links(links)
{
}

ThumbnailRequest MediaThumbnailSource::request(const QString &path, int pixelSize, QObject *context,
                                               std::function<void(QImage)> answer)
{
    return ThumbnailRequest::holding(m_client.thumbnail(
        path, pixelSize, MediaClient::CacheUse::ReadAndFill,
        [guard = QPointer<QObject>(context), answer = std::move(answer)](const PictureResult &result) {
            const auto *picture = std::get_if<MediaPicture>(&result);
            if (guard)
                answer(picture ? imageOf(*picture) : QImage());
        },
        m_links));
}

} // namespace ostrelle
