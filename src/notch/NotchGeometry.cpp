#include "notch/NotchGeometry.h"

#include <algorithm>

namespace ostrelle {

namespace {

/// The closed surface: one glyph per tool between margins.
constexpr double kGlyphWidth = 22;
constexpr double kGlyphSpacing = 6;
constexpr double kIdleMargins = 30;
/// How far the closed surface reaches below a camera notch, for the glyphs to peek out.
constexpr double kPeekHeight = 21;

constexpr QSizeF kHoverGrowth{14, 5};
constexpr QSizeF kArmedGrowth{44, 14};

constexpr double kPanelWidth = 588;
constexpr double kSelectorHeight = 112;
constexpr double kZoneWidth = 152;
constexpr double kZoneSpacing = 10;
constexpr double kZoneMargins = 28;
constexpr double kZonesHeight = 104;
constexpr double kMinimumBodyHeight = 150;

constexpr QSizeF kMinimumCatchArea{560, 380};
constexpr QSizeF kWindowMargins{92, 46};
constexpr QSizeF kMinimumCatchWindow{680, 380};
constexpr QSizeF kMaximumWindow{900, 700};

double rowWidth(int count, double width, double spacing, double margins)
{
    return count * width + (count - 1) * spacing + margins;
}

QSizeF idleSize(const GeometryInput &input)
{
    const double row = rowWidth(std::max(input.activeModuleCount, 1), kGlyphWidth, kGlyphSpacing, kIdleMargins);
    if (!input.metrics.hasHardwareNotch)
        return {row, input.metrics.menuBarHeight};
    const QSizeF &notch = input.metrics.hardwareNotchSize;
    return {std::max(notch.width(), row), notch.height() + kPeekHeight};
}

double bodyHeight(KestroModule module, std::optional<double> requested)
{
    return std::clamp(requested.value_or(kMinimumBodyHeight), kMinimumBodyHeight, maximumBodyHeight(module));
}

QSizeF expandedSize(const GeometryInput &input)
{
    const double around = input.metrics.topInset() + kSeamStripHeight;
    if (input.dropTargetCount > 0) {
        const double width = rowWidth(input.dropTargetCount, kZoneWidth, kZoneSpacing, kZoneMargins);
        return {width, kZonesHeight + around};
    }
    if (input.selection)
        return {kPanelWidth, bodyHeight(*input.selection, input.requestedContentHeight) + around};
    return {kPanelWidth, kSelectorHeight + around};
}

QSizeF contentSize(const GeometryInput &input, const QSizeF &idle)
{
    switch (input.phase) {
    case Phase::Idle:
        if (!input.showAutomatically)
            return {0, 0};
        return input.isDragCatchArmed ? idle + kArmedGrowth : idle;
    case Phase::Hover:
        return idle + kHoverGrowth;
    case Phase::Expanded:
        return expandedSize(input);
    }
    Q_UNREACHABLE();
}

QSizeF interactionSize(const GeometryInput &input, const QSizeF &idle, const QSizeF &content)
{
    if (input.phase == Phase::Expanded || content.isEmpty())
        return content;
    return content.expandedTo(idle + kHoverGrowth);
}

QSizeF windowSize(const GeometryInput &input, const QSizeF &interaction)
{
    QSizeF size = interaction + kWindowMargins;
    if (input.isDragCatchArmed || input.dropTargetCount > 0)
        size = size.expandedTo(kMinimumCatchWindow);
    return size.boundedTo(kMaximumWindow);
}

} // namespace

NotchGeometry NotchGeometry::compute(const GeometryInput &input)
{
    NotchGeometry geometry;
    geometry.idleSize = ostrelle::idleSize(input);
    geometry.contentSize = ostrelle::contentSize(input, geometry.idleSize);
    geometry.interactionSize = ostrelle::interactionSize(input, geometry.idleSize, geometry.contentSize);
    geometry.catchArea =
        input.isDragCatchArmed ? geometry.interactionSize.expandedTo(kMinimumCatchArea) : geometry.interactionSize;
    if (input.metrics.hasHardwareNotch || input.phase == Phase::Expanded)
        geometry.contentTopInset = input.metrics.topInset();
    geometry.windowSize = ostrelle::windowSize(input, geometry.interactionSize);
    return geometry;
}

double minimumBodyHeight()
{
    return kMinimumBodyHeight;
}

double maximumBodyHeight(KestroModule module)
{
    switch (module) {
    case KestroModule::Clipboard:
        return 402;
    case KestroModule::Color:
        return 426;
    case KestroModule::Assets:
    case KestroModule::Projects:
        return 374;
    case KestroModule::ImageInfo:
        return 462;
    case KestroModule::AudioInfo:
        return 490;
    }
    Q_UNREACHABLE();
}

} // namespace ostrelle
