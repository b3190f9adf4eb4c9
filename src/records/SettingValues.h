#pragma once

#include "records/AnimationIntensity.h"
#include "records/AppearancePreference.h"
#include "records/KestroModule.h"
#include "records/NotchTheme.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <optional>

namespace ostrelle {

class DefaultsDatabase;

/// Every preference as a plain value, with the defaults of a missing key.
struct SettingValues
{
    bool showAutomatically = true;
    AnimationIntensity animationIntensity = AnimationIntensity::Standard;
    AppearancePreference appearance = AppearancePreference::System;
    NotchTheme notchTheme = NotchTheme::Spectrum;
    bool hapticFeedback = true;
    double hoverOpenDelay = 1.0; ///< seconds; 0 or less: hovering never opens
    bool catchDraggedFiles = true;
    bool autoCheckUpdates = true;
    std::optional<QString> skippedUpdateVersion;
    QList<KestroModule> moduleOrder = QList<KestroModule>(kAllModules.begin(), kAllModules.end());
    QSet<KestroModule> enabledModules = QSet<KestroModule>(kAllModules.begin(), kAllModules.end());
    bool clipboardEnabled = true;
    int clipboardLimit = 60;
    bool ignoreConcealed = true;
    bool clearOnQuit = false;
    QStringList excludedApps = {QStringLiteral("com.agilebits.onepassword7"), QStringLiteral("com.1password.1password"),
                                QStringLiteral("com.apple.keychainaccess"), QStringLiteral("com.bitwarden.desktop")};
    bool hasCompletedOnboarding = false;
    /// Output name to the size of its camera notch, logical pixels.
    QMap<QString, QSizeF> displayNotch;

    friend bool operator==(const SettingValues &, const SettingValues &) = default;
};

/// Reads every setting: a stored number converts, a missing or wrongly typed value gives the default, the module order
/// is repaired, an old theme key is honoured.
SettingValues loadSettings(const DefaultsDatabase &database);

/// moduleOrder filtered to enabledModules, order (and duplicates) kept.
QList<KestroModule> activeModules(const SettingValues &values);

} // namespace ostrelle
