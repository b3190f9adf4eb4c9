#pragma once

#include "files/ThumbnailSource.h"
#include "media_client/MediaClient.h"

namespace ostrelle {

/// Thumbnails from the desktop's cache and the media helpers.
class MediaThumbnailSource final : public ThumbnailSource
{
public:
    MediaThumbnailSource(MediaClient &client, MediaClient::Links links);

    ThumbnailRequest request(const QString &path, int pixelSize, QObject *context,
                             std::function<void(QImage)> answer) override;

private:
    MediaClient &m_client;
    MediaClient::Links m_links;
};

} // namespace ostrelle
