#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// Which appearance the notch and the windows use; System follows the desktop.
enum class AppearancePreference { System, Light, Dark };

inline constexpr std::array<AppearancePreference, 3> kAllAppearancePreferences = {
    AppearancePreference::System, AppearancePreference::Light, AppearancePreference::Dark};

QString rawValue(AppearancePreference preference);
std::optional<AppearancePreference> appearancePreferenceFromRawValue(QStringView raw);

} // namespace ostrelle
