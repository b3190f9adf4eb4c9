#pragma once

#include "clipboard/ClipImages.h"
#include "foundation/TaskScheduler.h"

#include <QBuffer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace ostrelle {

/// Decodes what the toolkit can, by the manual clock. Nothing that was dropped is answered.
class FakeClipImages final : public ClipImages
{
public:
    explicit FakeClipImages(TaskScheduler &scheduler)
        : m_scheduler(scheduler)
    {
    }

    std::chrono::milliseconds delay{0}; ///< of each answer
    int tileCount() const { return m_tileCount; }
    int conversionCount() const { return m_conversionCount; }
    /// The image whose tile was asked for last.
    const QByteArray &lastImage() const { return m_lastImage; }

    std::unique_ptr<Request> tile(const QByteArray &image, int side,
                                  std::function<void(const ClipTile &)> answer) override
    {
        ++m_tileCount;
        m_lastImage = image;
        return later([image, side, answer = std::move(answer)] {
            const QImage decoded = QImage::fromData(image);
            const int shorter = std::min(decoded.width(), decoded.height());
            const QRect middle((decoded.width() - shorter) / 2, (decoded.height() - shorter) / 2, shorter, shorter);
            answer({.picture = decoded.isNull() ? QImage() : decoded.copy(middle).scaled(side, side),
                    .pixelSize = decoded.size()});
        });
    }

    std::unique_ptr<Request> toPng(const QByteArray &image,
                                   std::function<void(const std::optional<QByteArray> &)> answer) override
    {
        ++m_conversionCount;
        return later([image, answer = std::move(answer)] {
            QBuffer png;
            png.open(QIODevice::WriteOnly);
            const bool isDone = QImage::fromData(image).save(&png, "png");
            answer(isDone ? std::optional(png.data()) : std::nullopt);
        });
    }

private:
    struct Pending final : Request
    {
        Task task;
    };

    std::unique_ptr<Request> later(std::function<void()> call)
    {
        auto pending = std::make_unique<Pending>();
        pending->task = m_scheduler.after(delay, nullptr, std::move(call));
        return pending;
    }

    TaskScheduler &m_scheduler;
    int m_tileCount = 0;
    int m_conversionCount = 0;
    QByteArray m_lastImage;
};

} // namespace ostrelle
