#pragma once

#include "files/ThumbnailSource.h"

namespace ostrelle {

class MediaClient;

/// Thumbnails from the desktop's cache and the media helpers.
class MediaThumbnailSource final : public ThumbnailSource
{
public:
    explicit MediaThumbnailSource(MediaClient &client);

    ThumbnailRequest request(const QString &path, int pixelSize, QObject *context,
                             std::function<void(QImage)> answer) override;

private:
    MediaClient &m_client;
};

} // namespace ostrelle
