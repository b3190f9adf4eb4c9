#include "clipboard/MediaClipImages.h"

#include "core/MediaImage.h"
#include "media_client/MediaClient.h"

#include <utility>

namespace ostrelle {
namespace {

struct Pending final : ClipImages::Request
{
    explicit Pending(MediaRequest of)
        : request(std::move(of))
    {
    }
    MediaRequest request;
};

ClipTile tileOf(const PictureResult &result)
{
    const auto *picture = std::get_if<MediaPicture>(&result);
    if (!picture)
        return {};
    return {.picture = imageOf(*picture), .pixelSize = {picture->sourceWidth, picture->sourceHeight}};
}

} // namespace

MediaClipImages::MediaClipImages(MediaClient &client)
    : m_client(client)
{
}

std::unique_ptr<ClipImages::Request> MediaClipImages::tile(const QByteArray &image, int side,
                                                           std::function<void(const ClipTile &)> answer)
{
    return std::make_unique<Pending>(m_client.thumbnailOfBytes(
        image, side, MediaClient::Shape::Square,
        [answer = std::move(answer)](const PictureResult &result) { answer(tileOf(result)); }));
}

std::unique_ptr<ClipImages::Request>
MediaClipImages::toPng(const QByteArray &image, std::function<void(const std::optional<QByteArray> &)> answer)
{
    return std::make_unique<Pending>(
        m_client.convertToPng(image, [answer = std::move(answer)](const PngResult &result) {
            const auto *png = std::get_if<QByteArray>(&result);
            answer(png ? std::optional(*png) : std::nullopt);
        }));
}

} // namespace ostrelle
