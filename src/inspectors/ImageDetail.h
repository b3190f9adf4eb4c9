#pragma once

#include "foundation/RequestHandle.h"
#include "inspectors/ThumbnailBox.h"
#include "notch/controls/MetadataGrid.h"

namespace ostrelle {

class ThumbnailSource;
struct ImageInspection;

/// What the image tool shows of a file: its picture, and the facts beside it.
class ImageDetail : public QWidget
{
    Q_OBJECT
public:
    ImageDetail(const ControlContext &context, ThumbnailSource &pictures, ClipboardPort &clipboard, Haptics &haptics,
                QWidget *parent);
    ~ImageDetail() override;

    /// Keeps what it shows when there is no file: it is on its way out then.
    void setInspection(const ImageInspection &inspection);
    QString text() const { return m_facts.text(); }

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void showThumbnail(const ImageInspection &inspection);

    ThumbnailSource &m_pictures;
    ThumbnailBox &m_box;
    MetadataGrid &m_facts;
    QImage m_thumbnail;
    RequestHandle m_request; ///< for a finer picture
};

} // namespace ostrelle
