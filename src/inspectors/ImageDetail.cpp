#include "inspectors/ImageDetail.h"

#include "files/ThumbnailSource.h"
#include "foundation/MakeChild.h"
#include "inspectors/ImageInspector.h"
#include "media_client/ByteCount.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ostrelle {
namespace {

constexpr int kImageSide = 14;
constexpr int kImageTop = 12;
constexpr int kRowsLeft = 194;

QList<MetadataGrid::Fact> factsOfImage(const ImageInfo &info)
{
    QList<MetadataGrid::Fact> facts{
        {QStringLiteral("Dimensions"), QStringLiteral("%1 × %2").arg(info.pixelWidth).arg(info.pixelHeight)},
        {QStringLiteral("Format"), info.format},
        {QStringLiteral("File Size"), byteCountString(info.byteSize)},
    };
    if (info.colorSpace)
        facts.append({QStringLiteral("Color Space"), *info.colorSpace});
    if (info.bitDepth) {
        const QString alpha = info.hasAlpha ? QStringLiteral(" + alpha") : QString();
        facts.append({QStringLiteral("Bit Depth"), QStringLiteral("%1 bit").arg(*info.bitDepth) + alpha});
    }
    if (info.dpi && *info.dpi >= 1)
        facts.append({QStringLiteral("Resolution"), QStringLiteral("%1 DPI").arg(*info.dpi)});
    return facts;
}

} // namespace

ImageDetail::ImageDetail(const ControlContext &context, ThumbnailSource &pictures, ClipboardPort &clipboard,
                         Haptics &haptics, QWidget *parent)
    : QWidget(parent)
    , m_pictures(pictures)
    , m_box(makeChild<ThumbnailBox>(this, context))
    , m_facts(makeChild<MetadataGrid>(this, context, clipboard, haptics, 1))
{
    setAttribute(Qt::WA_NoSystemBackground);
    m_box.move(kImageSide, kImageTop);
}

ImageDetail::~ImageDetail() = default;

void ImageDetail::setInspection(const ImageInspection &inspection)
{
    if (!inspection.info)
        return;
    m_facts.setFacts(factsOfImage(*inspection.info));
    showThumbnail(inspection);
}

/// The thumbnail first and, where pixels are small, a finer one when it is there.
void ImageDetail::showThumbnail(const ImageInspection &inspection)
{
    const int longer = std::max(inspection.info->pixelWidth, inspection.info->pixelHeight);
    const bool isNew = std::exchange(m_thumbnail, inspection.thumbnail) != inspection.thumbnail;
    if (!isNew && !m_thumbnail.isNull())
        return;
    m_box.setPicture(inspection.path, m_thumbnail, longer);
    m_request.cancel();
    const auto wanted = static_cast<int>(std::ceil(ThumbnailBox::kPictureSide * devicePixelRatioF()));
    if (m_thumbnail.isNull() || std::min(wanted, longer) <= ImageInspector::kThumbnailSize)
        return;
    m_request = m_pictures.request(inspection.path, wanted, this,
                                   [this, longer, path = inspection.path](const QImage &picture) {
                                       if (!picture.isNull())
                                           m_box.setPicture(path, picture, longer);
                                   });
}

void ImageDetail::resizeEvent(QResizeEvent *)
{
    m_facts.setGeometry(kRowsLeft, kImageTop, width() - kRowsLeft - kImageSide, m_facts.height());
}

} // namespace ostrelle
