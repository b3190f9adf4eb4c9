#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <functional>
#include <memory>
#include <optional>

namespace ostrelle {

/// A copied image as a preview tile shows it.
struct ClipTile
{
    QImage picture;  ///< square; null when the image does not decode
    QSize pixelSize; ///< of the image; empty when it does not decode
};

/// Decodes copied images outside this process. Main thread; nothing here waits. Every request is answered once, never
/// from within the call, and not at all when its handle is gone by then.
class ClipImages
{
public:
    /// Destroying it drops the request.
    class Request
    {
    public:
        virtual ~Request() = default;
    };

    virtual ~ClipImages() = default;

    /// The middle square of the image, at most `side` device pixels on each side.
    [[nodiscard]] virtual std::unique_ptr<Request> tile(const QByteArray &image, int side,
                                                        std::function<void(const ClipTile &)> answer) = 0;
    /// The image as PNG, as large as it is; nothing when it does not decode or does not fit into the history.
    [[nodiscard]] virtual std::unique_ptr<Request>
    toPng(const QByteArray &image, std::function<void(const std::optional<QByteArray> &)> answer) = 0;
};

} // namespace ostrelle
