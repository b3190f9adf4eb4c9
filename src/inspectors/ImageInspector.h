#pragma once

#include "inspectors/FileInspector.h"
#include "media_client/ImageInfo.h"

#include <QImage>

#include <optional>

namespace ostrelle {

class FactSource;
class ThumbnailSource;

/// The image file on display.
struct ImageInspection
{
    std::optional<ImageInfo> info;
    QString path;     ///< empty without a file on display
    QImage thumbnail; ///< null while it is not there, and for good when there is none

    friend bool operator==(const ImageInspection &, const ImageInspection &) = default;
};

/// What the image tool shows. Main thread; nothing here waits.
class ImageInspector final : public FileInspector
{
    Q_OBJECT
public:
    /// The longer side of the thumbnail at most, pixels.
    static constexpr int kThumbnailSize = 240;

    ImageInspector(const Surroundings &surroundings, FactSource &facts, ThumbnailSource &thumbnails,
                   QObject *parent = nullptr);

    /// Whether the name is that of an image file.
    static bool supports(const QString &path);

    const ImageInspection &inspection() const { return m_inspection.value(); }
    QBindable<ImageInspection> bindableInspection() { return &m_inspection; }

    /// The file on display stays when this one is refused. The thumbnail may come after the facts.
    void load(const QString &path) override;
    void clear() override;

private:
    void take(const QString &path, const std::optional<ImageInfo> &info);

    FactSource &m_facts;
    ThumbnailSource &m_thumbnails;
    RequestHandle m_thumbnailRequest;
    QProperty<ImageInspection> m_inspection;
};

} // namespace ostrelle
