#include "records/AnimationIntensity.h"

#include "records/RawValues.h"

namespace ostrelle {

QString rawValue(AnimationIntensity intensity)
{
    switch (intensity) {
    case AnimationIntensity::Subtle:
        return QStringLiteral("subtle");
    case AnimationIntensity::Standard:
        return QStringLiteral("standard");
    case AnimationIntensity::Expressive:
        return QStringLiteral("expressive");
    }
    Q_UNREACHABLE();
}

std::optional<AnimationIntensity> animationIntensityFromRawValue(QStringView raw)
{
    return findByRawValue(kAllAnimationIntensities, raw);
}

} // namespace ostrelle
