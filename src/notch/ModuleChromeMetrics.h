#pragma once

namespace ostrelle {

/// Lengths shared by what stands in the open panel, logical pixels.
namespace chrome {

inline constexpr double kPanelWidth = 588;
inline constexpr double kSelectorHeight = 112;
inline constexpr double kHeaderHeight = 44;
inline constexpr double kHeaderPadding = 12;
inline constexpr double kStripHeight = 62;
inline constexpr double kActionSpacing = 4;
/// Distance between two tiles, and between two marks of the closed notch.
inline constexpr double kTilePitch = 88;
inline constexpr double kMarkPitch = 28;

} // namespace chrome
} // namespace ostrelle
