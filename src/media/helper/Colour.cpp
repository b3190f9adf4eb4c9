#include "media_helper/Colour.h"

#include <lcms2.h>

#include <memory>

namespace ostrelle {
namespace {

struct CloseProfile
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
struct DeleteTransform
{
    void operator()(void *transform) const { cmsDeleteTransform(transform); }
};
using Profile = std::unique_ptr<void, CloseProfile>;
using Transform = std::unique_ptr<void, DeleteTransform>;

struct ChannelFormat
{
    cmsColorSpaceSignature space;
    cmsUInt32Number type;
};

ChannelFormat formatOf(PixelLayout layout)
{
    switch (layout) {
    case PixelLayout::Gray:
        return {cmsSigGrayData, TYPE_GRAY_8};
    case PixelLayout::GrayAlpha:
        return {cmsSigGrayData, TYPE_GRAYA_8};
    case PixelLayout::Rgb:
        return {cmsSigRgbData, TYPE_RGB_8};
    case PixelLayout::Cmyk:
        return {cmsSigCmykData, TYPE_CMYK_8};
    case PixelLayout::InvertedCmyk:
        return {cmsSigCmykData, TYPE_CMYK_8_REV};
    default:
        return {cmsSigRgbData, TYPE_RGBA_8};
    }
}

Transform transformFor(PixelLayout layout, const std::vector<std::uint8_t> &icc)
{
    if (icc.empty())
        return {};
    const ChannelFormat format = formatOf(layout);
    const Profile from(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size())));
    if (!from || cmsGetColorSpace(from.get()) != format.space)
        return {};
    const Profile to(cmsCreate_sRGBProfile());
    const cmsUInt32Number flags = hasAlpha(layout) ? cmsFLAGS_COPY_ALPHA : 0;
    return Transform(cmsCreateTransform(from.get(), format.type, to.get(), TYPE_RGBA_8, INTENT_PERCEPTUAL, flags));
}

std::uint8_t ink(unsigned light, unsigned black)
{
    return static_cast<std::uint8_t>((light * black + 127) / 255);
}

void plainPixel(PixelLayout layout, const std::uint8_t *in, std::uint8_t *out)
{
    switch (layout) {
    case PixelLayout::Gray:
    case PixelLayout::GrayAlpha:
        out[0] = out[1] = out[2] = in[0];
        out[3] = layout == PixelLayout::Gray ? 0xff : in[1];
        break;
    case PixelLayout::Cmyk:
    case PixelLayout::InvertedCmyk: {
        const unsigned flip = layout == PixelLayout::Cmyk ? 0xff : 0;
        for (int c = 0; c < 3; ++c)
            out[c] = ink(in[c] ^ flip, in[3] ^ flip);
        out[3] = 0xff;
        break;
    }
    default:
        out[0] = in[0];
        out[1] = in[1];
        out[2] = in[2];
        out[3] = hasAlpha(layout) ? in[3] : 0xff;
    }
}

} // namespace

Raster toSrgb(Raster picture, const std::vector<std::uint8_t> &icc)
{
    const Transform transform = transformFor(picture.layout, icc);
    if (!transform && picture.layout == PixelLayout::Rgba)
        return picture;
    Raster result;
    result.size = picture.size;
    // Opaque where the transform writes no alpha.
    result.bytes.assign(result.stride() * static_cast<std::size_t>(picture.size.height), 0xff);
    const std::size_t channels = static_cast<std::size_t>(channelsOf(picture.layout));
    for (int row = 0; row < picture.size.height; ++row) {
        const std::uint8_t *in = picture.bytes.data() + picture.stride() * static_cast<std::size_t>(row);
        std::uint8_t *out = result.bytes.data() + result.stride() * static_cast<std::size_t>(row);
        if (transform) {
            cmsDoTransform(transform.get(), in, out, static_cast<cmsUInt32Number>(picture.size.width));
            continue;
        }
        for (int x = 0; x < picture.size.width; ++x, in += channels, out += 4)
            plainPixel(picture.layout, in, out);
    }
    return result;
}

} // namespace ostrelle
