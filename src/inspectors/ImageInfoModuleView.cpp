#include "inspectors/ImageInfoModuleView.h"

#include "foundation/MakeChild.h"
#include "inspectors/ImageDetail.h"
#include "inspectors/ImageInspector.h"
#include "media_client/MediaKind.h"

namespace ostrelle {

ImageInfoModuleView::ImageInfoModuleView(ImageInspector &inspector, const Surroundings &surroundings,
                                         const ControlContext &context, QWidget *parent)
    : InspectorView(inspector,
                    Kind{.invitation = {.symbol = QStringLiteral("photo"),
                                        .message = QStringLiteral("Drop an image here"),
                                        .hint = {}},
                         .refusal = {.symbol = QStringLiteral("exclamationmark.triangle"),
                                     .message = QStringLiteral("That isn't an image"),
                                     .hint = QStringLiteral("Try a PNG, JPEG, HEIC, TIFF or RAW file")},
                         .chooseHelp = QStringLiteral("Choose an image…"),
                         .chooserMessage = QStringLiteral("Choose an image to inspect."),
                         .chooserKind = QStringLiteral("Images"),
                         .mimeTypes = {QStringLiteral("image/*")},
                         .namePatterns = extraNamePatterns(NamedKind::Image),
                         .symbol = QStringLiteral("photo"),
                         .hasThumbnails = true,
                         .isPlayable = false,
                         .detailHeight = 186},
                    surroundings, context, parent)
    , m_inspector(inspector)
    , m_detail(
          makeChild<ImageDetail>(this, context, surroundings.pictures, surroundings.clipboard, surroundings.haptics))
    , m_watch(inspector.bindableInspection().addNotifier([this] { follow(); }))
{
    setDetail(m_detail);
    follow();
}

ImageInfoModuleView::~ImageInfoModuleView() = default;

void ImageInfoModuleView::follow()
{
    m_detail.setInspection(m_inspector.inspection());
    setFocusOrder();
    showFile(m_inspector.inspection().info.has_value());
}

QString ImageInfoModuleView::factsText() const
{
    return m_detail.text();
}

} // namespace ostrelle
