#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// The character of every movement.
enum class AnimationIntensity { Subtle, Standard, Expressive };

inline constexpr std::array<AnimationIntensity, 3> kAllAnimationIntensities = {
    AnimationIntensity::Subtle, AnimationIntensity::Standard, AnimationIntensity::Expressive};

QString rawValue(AnimationIntensity intensity);
std::optional<AnimationIntensity> animationIntensityFromRawValue(QStringView raw);

} // namespace ostrelle
