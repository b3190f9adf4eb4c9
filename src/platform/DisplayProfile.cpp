#include "platform/DisplayProfile.h"

#include <algorithm>
#include <array>

#include <lcms2.h>

namespace ostrelle {

namespace {

struct CloseProfile
{
    void operator()(void *profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

} // namespace

void DisplayProfile::DeleteTransform::operator()(void *transform) const
{
    cmsDeleteTransform(transform);
}

std::optional<DisplayProfile> DisplayProfile::create(const QByteArray &icc)
{
    const Profile display(cmsOpenProfileFromMem(icc.constData(), static_cast<cmsUInt32Number>(icc.size())));
    if (!display || cmsGetColorSpace(display.get()) != cmsSigRgbData) {
        return std::nullopt;
    }
    const Profile srgb(cmsCreate_sRGBProfile());
    // Not optimised: that would round to the steps of a table, and one pixel at a time needs no speed.
    Transform transform(cmsCreateTransform(display.get(), TYPE_RGB_DBL, srgb.get(), TYPE_RGB_DBL,
                                           INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
    return transform ? std::optional(DisplayProfile(std::move(transform))) : std::nullopt;
}

DisplayProfile::DisplayProfile(Transform transform)
    : m_transform(std::move(transform))
{
}

PickedColour DisplayProfile::toSrgb(const PickedColour &shown) const
{
    const std::array<double, 3> in{shown.red, shown.green, shown.blue};
    std::array<double, 3> out{};
    cmsDoTransform(m_transform.get(), in.data(), out.data(), 1);
    const auto within = [](double value) { return std::clamp(value, 0.0, 1.0); };
    return {within(out[0]), within(out[1]), within(out[2])};
}

} // namespace ostrelle
