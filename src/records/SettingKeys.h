#pragma once

#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <span>

namespace ostrelle {

/// The stored type of a setting.
enum class SettingType { Boolean, Integer, Double, String, OptionalString, StringList, StringMap };

/// One row of the table of settings: everything that the store, the command line and the documents need to know of a
/// key.
struct SettingKey
{
    QStringView key;
    SettingType type;
    /// Raw values that are accepted, for enumerations and lists of them; empty means any.
    QStringList allowed;
    QJsonValue fallback;
    QString help;
};

/// All keys in the order of the table.
std::span<const SettingKey> allSettingKeys();
/// The row of `key`, or null.
const SettingKey *findSettingKey(QStringView key);
/// Why `value` cannot be stored under `key`, as a sentence without a full stop; nothing when it can.
std::optional<QString> settingProblem(const SettingKey &key, const QJsonValue &value);

namespace SettingNames {
inline constexpr QStringView kShowAutomatically = u"general.showAutomatically";
inline constexpr QStringView kAnimationIntensity = u"general.animationIntensity";
inline constexpr QStringView kAppearance = u"appearance.preference";
inline constexpr QStringView kNotchTheme = u"appearance.notchTheme";
/// Read where kNotchTheme is missing, never written.
inline constexpr QStringView kSeamAccent = u"appearance.seamAccent";
inline constexpr QStringView kHapticFeedback = u"general.haptics";
inline constexpr QStringView kHoverOpenDelay = u"general.hoverOpenDelay";
inline constexpr QStringView kCatchDraggedFiles = u"general.catchDraggedFiles";
inline constexpr QStringView kAutoCheckUpdates = u"updates.autoCheck";
inline constexpr QStringView kSkippedUpdateVersion = u"updates.skippedVersion";
inline constexpr QStringView kModuleOrder = u"modules.order";
inline constexpr QStringView kEnabledModules = u"modules.enabled";
inline constexpr QStringView kClipboardEnabled = u"clipboard.enabled";
inline constexpr QStringView kClipboardLimit = u"clipboard.limit";
inline constexpr QStringView kIgnoreConcealed = u"clipboard.ignoreConcealed";
inline constexpr QStringView kClearOnQuit = u"clipboard.clearOnQuit";
inline constexpr QStringView kExcludedApps = u"clipboard.excludedApps";
inline constexpr QStringView kHasCompletedOnboarding = u"app.hasCompletedOnboarding";
/// Output name to "WIDTHxHEIGHT" of a camera notch that the desktop does not report.
inline constexpr QStringView kDisplayNotch = u"display.notch";
} // namespace SettingNames

} // namespace ostrelle
