#pragma once

#include "records/SettingValues.h"

#include <QBindable>
#include <QObject>
#include <QProperty>

#include <initializer_list>

namespace ostrelle {

class DefaultsDatabase;

/// Every preference, observable; loaded from the defaults database when created and written through on each assignment
/// (also of an equal value; observers are told only of a change). Main thread.
class SettingsStore : public QObject
{
    Q_OBJECT
public:
    explicit SettingsStore(DefaultsDatabase &database, QObject *parent = nullptr);

    // For observing only: an assignment goes through the setters, which store it.
    QBindable<bool> bindableShowAutomatically();
    QBindable<AnimationIntensity> bindableAnimationIntensity();
    QBindable<AppearancePreference> bindableAppearance();
    QBindable<NotchTheme> bindableNotchTheme();
    QBindable<double> bindableHoverOpenDelay();
    QBindable<QList<KestroModule>> bindableActiveModules();
    QBindable<bool> bindableClipboardEnabled();
    QBindable<int> bindableClipboardLimit();
    QBindable<QMap<QString, QSizeF>> bindableDisplayNotch();
    QBindable<bool> bindableAutoCheckUpdates();
    QBindable<bool> bindableHapticFeedback();
    QBindable<bool> bindableCatchDraggedFiles();
    QBindable<bool> bindableIgnoreConcealed();
    QBindable<bool> bindableClearOnQuit();
    QBindable<QStringList> bindableExcludedApps();
    QBindable<QList<KestroModule>> bindableModuleOrder();
    QBindable<QSet<KestroModule>> bindableEnabledModules();

    bool showAutomatically() const;
    AnimationIntensity animationIntensity() const;
    AppearancePreference appearance() const;
    NotchTheme notchTheme() const;
    bool hapticFeedback() const;
    double hoverOpenDelay() const;
    bool catchDraggedFiles() const;
    bool autoCheckUpdates() const;
    std::optional<QString> skippedUpdateVersion() const;
    QList<KestroModule> moduleOrder() const;
    QSet<KestroModule> enabledModules() const;
    /// moduleOrder filtered to enabledModules.
    QList<KestroModule> activeModules() const;
    bool clipboardEnabled() const;
    int clipboardLimit() const;
    bool ignoreConcealed() const;
    bool clearOnQuit() const;
    QStringList excludedApps() const;
    bool hasCompletedOnboarding() const;
    QMap<QString, QSizeF> displayNotch() const;

    void setShowAutomatically(bool value);
    void setAnimationIntensity(AnimationIntensity value);
    void setAppearance(AppearancePreference value);
    void setNotchTheme(NotchTheme value);
    void setHapticFeedback(bool value);
    void setHoverOpenDelay(double seconds);
    void setCatchDraggedFiles(bool value);
    void setAutoCheckUpdates(bool value);
    void setSkippedUpdateVersion(const std::optional<QString> &version);
    void setModuleOrder(const QList<KestroModule> &order);
    void setEnabledModules(const QSet<KestroModule> &modules);
    void setClipboardEnabled(bool value);
    void setClipboardLimit(int items);
    void setIgnoreConcealed(bool value);
    void setClearOnQuit(bool value);
    void setExcludedApps(const QStringList &identifiers);
    void setHasCompletedOnboarding(bool value);

    /// Stores a raw value under a key of the table of settings (checked by the caller with settingProblem()), or
    /// removes it, and takes every property anew from the database.
    void setRaw(const QString &key, const QJsonValue &value);
    void reset(const QString &key);
    /// The value in force of a key of the table, as it would be stored.
    QJsonValue raw(const QString &key) const;

Q_SIGNALS:
    /// After every assignment of autoCheckUpdates, of an equal value too: whoever switches it on wants a check soon.
    void autoCheckUpdatesAssigned();

private:
    void announce(QStringView key);
    using NotchSizes = QMap<QString, QSizeF>;

    void reload();
    SettingValues values() const;
    /// Observers run when the value is stored and everything that follows from it is done.
    template <typename Property, typename Value>
    void assign(Property &property, Value SettingValues::*member, const Value &value,
                std::initializer_list<QStringView> keys);

    DefaultsDatabase &m_database;
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_showAutomatically)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, AnimationIntensity, m_animationIntensity)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, AppearancePreference, m_appearance)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, NotchTheme, m_notchTheme)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_hapticFeedback)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, double, m_hoverOpenDelay)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_catchDraggedFiles)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_autoCheckUpdates)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, std::optional<QString>, m_skippedUpdateVersion)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, QList<KestroModule>, m_moduleOrder)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, QSet<KestroModule>, m_enabledModules)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, QList<KestroModule>, m_activeModules)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_clipboardEnabled)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, int, m_clipboardLimit)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_ignoreConcealed)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_clearOnQuit)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, QStringList, m_excludedApps)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, bool, m_hasCompletedOnboarding)
    Q_OBJECT_BINDABLE_PROPERTY(SettingsStore, NotchSizes, m_displayNotch)
};

} // namespace ostrelle
