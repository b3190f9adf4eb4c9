#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace ostrelle {

/// The pages of the settings window, in the order of its sidebar. The raw value is their name on the command line.
enum class SettingsSection { General, Modules, Shortcuts, Appearance, Privacy, About };

inline constexpr std::array<SettingsSection, 6> kAllSettingsSections = {
    SettingsSection::General,    SettingsSection::Modules, SettingsSection::Shortcuts,
    SettingsSection::Appearance, SettingsSection::Privacy, SettingsSection::About};

QString rawValue(SettingsSection section);
std::optional<SettingsSection> settingsSectionFromRawValue(QStringView raw);
QString title(SettingsSection section);
QString symbol(SettingsSection section);

} // namespace ostrelle
