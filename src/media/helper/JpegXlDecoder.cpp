#include "media_helper/ByteSource.h"
#include "media_helper/Decoders.h"
#include "media_helper/PictureBuilder.h"

#include <jxl/decode.h>

#include <memory>
#include <utility>

namespace ostrelle {
namespace {

constexpr std::uint64_t kLongestFile = 256U << 20U;
constexpr JxlPixelFormat kFormat{4, JXL_TYPE_UINT8, JXL_LITTLE_ENDIAN, 0};

struct Destroy
{
    void operator()(JxlDecoder *decoder) const { JxlDecoderDestroy(decoder); }
};

/// Of the pixels as they come out, which is the profile of the file or what its own coding was turned into.
std::vector<std::uint8_t> iccIn(const JxlDecoder *decoder)
{
    std::size_t size = 0;
    if (JxlDecoderGetICCProfileSize(decoder, &kFormat, JXL_COLOR_PROFILE_TARGET_DATA, &size) != JXL_DEC_SUCCESS)
        return {};
    std::vector<std::uint8_t> icc(size);
    if (JxlDecoderGetColorAsICCProfile(decoder, &kFormat, JXL_COLOR_PROFILE_TARGET_DATA, icc.data(), size) !=
        JXL_DEC_SUCCESS)
        return {};
    return icc;
}

/// The first frame, in pixels of `pixels`; the events come in this order.
HelperStatus decodeFrame(JxlDecoder *decoder, PictureFacts &facts, std::vector<std::uint8_t> &pixels)
{
    for (;;) {
        switch (JxlDecoderProcessInput(decoder)) {
        case JXL_DEC_BASIC_INFO: {
            JxlBasicInfo info{};
            if (JxlDecoderGetBasicInfo(decoder, &info) != JXL_DEC_SUCCESS)
                return HelperStatus::Broken;
            if (std::uint64_t(info.xsize) * info.ysize > std::uint64_t(kWholePicturePixels))
                return HelperStatus::TooLarge;
            facts.full = facts.decoded = {static_cast<int>(info.xsize), static_cast<int>(info.ysize)};
            facts.layout = info.alpha_premultiplied != 0 ? PixelLayout::PremultipliedRgba : PixelLayout::Rgba;
            break;
        }
        case JXL_DEC_COLOR_ENCODING:
            facts.icc = iccIn(decoder);
            break;
        case JXL_DEC_NEED_IMAGE_OUT_BUFFER: {
            std::size_t size = 0;
            if (JxlDecoderImageOutBufferSize(decoder, &kFormat, &size) != JXL_DEC_SUCCESS)
                return HelperStatus::Broken;
            pixels.resize(size);
            if (JxlDecoderSetImageOutBuffer(decoder, &kFormat, pixels.data(), size) != JXL_DEC_SUCCESS)
                return HelperStatus::Broken;
            break;
        }
        case JXL_DEC_FULL_IMAGE:
            return HelperStatus::Done;
        default:
            return HelperStatus::Broken;
        }
    }
}

} // namespace

HelperStatus decodeJpegXl(ByteSource &source, PictureBuilder &builder)
{
    const std::vector<std::uint8_t> bytes = source.whole(kLongestFile);
    const std::unique_ptr<JxlDecoder, Destroy> decoder(JxlDecoderCreate(nullptr));
    if (bytes.empty() || !decoder)
        return HelperStatus::TooLarge;
    JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_BASIC_INFO | JXL_DEC_COLOR_ENCODING | JXL_DEC_FULL_IMAGE);
    if (JxlDecoderSetInput(decoder.get(), bytes.data(), bytes.size()) != JXL_DEC_SUCCESS)
        return HelperStatus::Broken;
    JxlDecoderCloseInput(decoder.get());
    PictureFacts facts;
    std::vector<std::uint8_t> pixels;
    const HelperStatus status = decodeFrame(decoder.get(), facts, pixels);
    if (status != HelperStatus::Done)
        return status;
    const PixelSize size = facts.decoded;
    const std::size_t stride = 4 * static_cast<std::size_t>(size.width);
    if (pixels.size() < stride * static_cast<std::size_t>(size.height) || !builder.begin(std::move(facts)))
        return builder.isTooLarge() ? HelperStatus::TooLarge : HelperStatus::Broken;
    for (int row = 0; row < size.height; ++row)
        builder.addRow(pixels.data() + static_cast<std::size_t>(row) * stride);
    return HelperStatus::Done;
}

} // namespace ostrelle
