#include "core/SettingsStore.h"

#include "foundation/DefaultsDatabase.h"
#include "records/Motion.h"
#include "records/SettingJson.h"
#include "records/SettingKeys.h"

#include <utility>

namespace ostrelle {

using namespace SettingNames;

SettingsStore::SettingsStore(DefaultsDatabase &database, QObject *parent)
    : QObject(parent)
    , m_database(database)
{
    m_activeModules.setBinding([this] {
        SettingValues values;
        values.moduleOrder = m_moduleOrder.value();
        values.enabledModules = m_enabledModules.value();
        return ostrelle::activeModules(values);
    });
    reload();
}

SettingValues SettingsStore::values() const
{
    SettingValues values;
    values.showAutomatically = m_showAutomatically.value();
    values.animationIntensity = m_animationIntensity.value();
    values.appearance = m_appearance.value();
    values.notchTheme = m_notchTheme.value();
    values.hapticFeedback = m_hapticFeedback.value();
    values.hoverOpenDelay = m_hoverOpenDelay.value();
    values.catchDraggedFiles = m_catchDraggedFiles.value();
    values.autoCheckUpdates = m_autoCheckUpdates.value();
    values.skippedUpdateVersion = m_skippedUpdateVersion.value();
    values.moduleOrder = m_moduleOrder.value();
    values.enabledModules = m_enabledModules.value();
    values.clipboardEnabled = m_clipboardEnabled.value();
    values.clipboardLimit = m_clipboardLimit.value();
    values.ignoreConcealed = m_ignoreConcealed.value();
    values.clearOnQuit = m_clearOnQuit.value();
    values.excludedApps = m_excludedApps.value();
    values.hasCompletedOnboarding = m_hasCompletedOnboarding.value();
    values.displayNotch = m_displayNotch.value();
    return values;
}

void SettingsStore::reload()
{
    // No update group: one key changed, so at most one property differs; and on Qt 6.4 observers of what depends on a
    // property in several steps miss a change that ends with a group (measured).
    const SettingValues values = loadSettings(m_database);
    Motion::setIntensity(values.animationIntensity);
    m_showAutomatically = values.showAutomatically;
    m_animationIntensity = values.animationIntensity;
    m_appearance = values.appearance;
    m_notchTheme = values.notchTheme;
    m_hapticFeedback = values.hapticFeedback;
    m_hoverOpenDelay = values.hoverOpenDelay;
    m_catchDraggedFiles = values.catchDraggedFiles;
    m_autoCheckUpdates = values.autoCheckUpdates;
    m_skippedUpdateVersion = values.skippedUpdateVersion;
    m_moduleOrder = values.moduleOrder;
    m_enabledModules = values.enabledModules;
    m_clipboardEnabled = values.clipboardEnabled;
    m_clipboardLimit = values.clipboardLimit;
    m_ignoreConcealed = values.ignoreConcealed;
    m_clearOnQuit = values.clearOnQuit;
    m_excludedApps = values.excludedApps;
    m_hasCompletedOnboarding = values.hasCompletedOnboarding;
    m_displayNotch = values.displayNotch;
}

template <typename Property, typename Value>
void SettingsStore::assign(Property &property, Value SettingValues::*member, const Value &value,
                           std::initializer_list<QStringView> keys)
{
    SettingValues next = values();
    next.*member = value;
    for (const QStringView key : keys) {
        const QJsonValue stored = settingToJson(next, key);
        if (stored.isNull())
            m_database.remove(key.toString());
        else
            m_database.setValue(key.toString(), stored);
    }
    // Last, so that observers find everything done.
    property = value;
}

void SettingsStore::setRaw(const QString &key, const QJsonValue &value)
{
    storeSetting(m_database, key, value);
    reload();
    announce(key);
}

void SettingsStore::reset(const QString &key)
{
    m_database.remove(key);
    reload();
    announce(key);
}

void SettingsStore::announce(QStringView key)
{
    if (key == kAutoCheckUpdates)
        Q_EMIT autoCheckUpdatesAssigned();
}

QJsonValue SettingsStore::raw(const QString &key) const
{
    return settingToJson(values(), key);
}

QBindable<bool> SettingsStore::bindableShowAutomatically()
{
    return &std::as_const(m_showAutomatically);
}

QBindable<AnimationIntensity> SettingsStore::bindableAnimationIntensity()
{
    return &std::as_const(m_animationIntensity);
}

QBindable<AppearancePreference> SettingsStore::bindableAppearance()
{
    return &std::as_const(m_appearance);
}

QBindable<NotchTheme> SettingsStore::bindableNotchTheme()
{
    return &std::as_const(m_notchTheme);
}

QBindable<double> SettingsStore::bindableHoverOpenDelay()
{
    return &std::as_const(m_hoverOpenDelay);
}

QBindable<bool> SettingsStore::bindableAutoCheckUpdates()
{
    return &std::as_const(m_autoCheckUpdates);
}

QBindable<QList<KestroModule>> SettingsStore::bindableActiveModules()
{
    return &std::as_const(m_activeModules);
}

QBindable<bool> SettingsStore::bindableClipboardEnabled()
{
    return &std::as_const(m_clipboardEnabled);
}

QBindable<int> SettingsStore::bindableClipboardLimit()
{
    return &std::as_const(m_clipboardLimit);
}

QBindable<QMap<QString, QSizeF>> SettingsStore::bindableDisplayNotch()
{
    return &std::as_const(m_displayNotch);
}

QBindable<bool> SettingsStore::bindableHapticFeedback()
{
    return &std::as_const(m_hapticFeedback);
}

QBindable<bool> SettingsStore::bindableCatchDraggedFiles()
{
    return &std::as_const(m_catchDraggedFiles);
}

QBindable<bool> SettingsStore::bindableIgnoreConcealed()
{
    return &std::as_const(m_ignoreConcealed);
}

QBindable<bool> SettingsStore::bindableClearOnQuit()
{
    return &std::as_const(m_clearOnQuit);
}

QBindable<QStringList> SettingsStore::bindableExcludedApps()
{
    return &std::as_const(m_excludedApps);
}

QBindable<QList<KestroModule>> SettingsStore::bindableModuleOrder()
{
    return &std::as_const(m_moduleOrder);
}

QBindable<QSet<KestroModule>> SettingsStore::bindableEnabledModules()
{
    return &std::as_const(m_enabledModules);
}

bool SettingsStore::showAutomatically() const
{
    return m_showAutomatically.value();
}

AnimationIntensity SettingsStore::animationIntensity() const
{
    return m_animationIntensity.value();
}

AppearancePreference SettingsStore::appearance() const
{
    return m_appearance.value();
}

NotchTheme SettingsStore::notchTheme() const
{
    return m_notchTheme.value();
}

bool SettingsStore::hapticFeedback() const
{
    return m_hapticFeedback.value();
}

double SettingsStore::hoverOpenDelay() const
{
    return m_hoverOpenDelay.value();
}

bool SettingsStore::catchDraggedFiles() const
{
    return m_catchDraggedFiles.value();
}

bool SettingsStore::autoCheckUpdates() const
{
    return m_autoCheckUpdates.value();
}

std::optional<QString> SettingsStore::skippedUpdateVersion() const
{
    return m_skippedUpdateVersion.value();
}

QList<KestroModule> SettingsStore::moduleOrder() const
{
    return m_moduleOrder.value();
}

QSet<KestroModule> SettingsStore::enabledModules() const
{
    return m_enabledModules.value();
}

QList<KestroModule> SettingsStore::activeModules() const
{
    return m_activeModules.value();
}

bool SettingsStore::clipboardEnabled() const
{
    return m_clipboardEnabled.value();
}

int SettingsStore::clipboardLimit() const
{
    return m_clipboardLimit.value();
}

bool SettingsStore::ignoreConcealed() const
{
    return m_ignoreConcealed.value();
}

bool SettingsStore::clearOnQuit() const
{
    return m_clearOnQuit.value();
}

QStringList SettingsStore::excludedApps() const
{
    return m_excludedApps.value();
}

bool SettingsStore::hasCompletedOnboarding() const
{
    return m_hasCompletedOnboarding.value();
}

QMap<QString, QSizeF> SettingsStore::displayNotch() const
{
    return m_displayNotch.value();
}

void SettingsStore::setShowAutomatically(bool value)
{
    assign(m_showAutomatically, &SettingValues::showAutomatically, value, {kShowAutomatically});
}

void SettingsStore::setAnimationIntensity(AnimationIntensity value)
{
    // Before anybody hears of it and animates.
    Motion::setIntensity(value);
    assign(m_animationIntensity, &SettingValues::animationIntensity, value, {kAnimationIntensity});
}

void SettingsStore::setAppearance(AppearancePreference value)
{
    assign(m_appearance, &SettingValues::appearance, value, {kAppearance});
}

void SettingsStore::setNotchTheme(NotchTheme value)
{
    assign(m_notchTheme, &SettingValues::notchTheme, value, {kNotchTheme});
}

void SettingsStore::setHapticFeedback(bool value)
{
    assign(m_hapticFeedback, &SettingValues::hapticFeedback, value, {kHapticFeedback});
}

void SettingsStore::setHoverOpenDelay(double seconds)
{
    assign(m_hoverOpenDelay, &SettingValues::hoverOpenDelay, seconds, {kHoverOpenDelay});
}

void SettingsStore::setCatchDraggedFiles(bool value)
{
    assign(m_catchDraggedFiles, &SettingValues::catchDraggedFiles, value, {kCatchDraggedFiles});
}

void SettingsStore::setAutoCheckUpdates(bool value)
{
    assign(m_autoCheckUpdates, &SettingValues::autoCheckUpdates, value, {kAutoCheckUpdates});
    announce(kAutoCheckUpdates);
}

void SettingsStore::setSkippedUpdateVersion(const std::optional<QString> &version)
{
    assign(m_skippedUpdateVersion, &SettingValues::skippedUpdateVersion, version, {kSkippedUpdateVersion});
}

void SettingsStore::setModuleOrder(const QList<KestroModule> &order)
{
    assign(m_moduleOrder, &SettingValues::moduleOrder, order, {kModuleOrder, kEnabledModules});
}

void SettingsStore::setEnabledModules(const QSet<KestroModule> &modules)
{
    assign(m_enabledModules, &SettingValues::enabledModules, modules, {kModuleOrder, kEnabledModules});
}

void SettingsStore::setClipboardEnabled(bool value)
{
    assign(m_clipboardEnabled, &SettingValues::clipboardEnabled, value, {kClipboardEnabled});
}

void SettingsStore::setClipboardLimit(int items)
{
    assign(m_clipboardLimit, &SettingValues::clipboardLimit, items, {kClipboardLimit});
}

void SettingsStore::setIgnoreConcealed(bool value)
{
    assign(m_ignoreConcealed, &SettingValues::ignoreConcealed, value, {kIgnoreConcealed});
}

void SettingsStore::setClearOnQuit(bool value)
{
    assign(m_clearOnQuit, &SettingValues::clearOnQuit, value, {kClearOnQuit});
}

void SettingsStore::setExcludedApps(const QStringList &identifiers)
{
    assign(m_excludedApps, &SettingValues::excludedApps, identifiers, {kExcludedApps});
}

void SettingsStore::setHasCompletedOnboarding(bool value)
{
    assign(m_hasCompletedOnboarding, &SettingValues::hasCompletedOnboarding, value, {kHasCompletedOnboarding});
}

} // namespace ostrelle
