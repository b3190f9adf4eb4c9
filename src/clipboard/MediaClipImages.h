#pragma once

#include "clipboard/ClipImages.h"

namespace ostrelle {

class MediaClient;

/// Lets the media helpers decode.
class MediaClipImages final : public ClipImages
{
public:
    explicit MediaClipImages(MediaClient &client);

    std::unique_ptr<Request> tile(const QByteArray &image, int side,
                                  std::function<void(const ClipTile &)> answer) override;
    std::unique_ptr<Request> toPng(const QByteArray &image,
                                   std::function<void(const std::optional<QByteArray> &)> answer) override;

private:
    MediaClient &m_client;
};

} // namespace ostrelle
