#pragma once

#include "platform/ColourPicker.h"

#include <QByteArray>

#include <memory>
#include <optional>

namespace ostrelle {

/// What the numbers of a screen mean: its ICC profile.
class DisplayProfile
{
public:
    /// Nothing when the bytes are no profile of an RGB device.
    static std::optional<DisplayProfile> create(const QByteArray &icc);

    /// What a colour that the screen is told to show looks like, relative to its white (relative colorimetric), within
    /// sRGB.
    PickedColour toSrgb(const PickedColour &shown) const;

private:
    struct DeleteTransform
    {
        void operator()(void *transform) const;
    };
    using Transform = std::unique_ptr<void, DeleteTransform>;
    explicit DisplayProfile(Transform transform);

    Transform m_transform;
};

} // namespace ostrelle
