#include "records/SettingValues.h"

#include "foundation/DefaultsDatabase.h"
#include "records/NotchSizeText.h"
#include "records/SettingKeys.h"

#include <QJsonArray>
#include <QJsonObject>

#include <cmath>
#include <limits>

namespace ostrelle {
namespace {

using namespace SettingNames;

std::optional<QJsonValue> stored(const DefaultsDatabase &database, QStringView key)
{
    return database.value(key.toString());
}

std::optional<double> numberIn(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? 1 : 0;
    if (value.isDouble())
        return value.toDouble();
    return std::nullopt;
}

void convert(const QJsonValue &value, bool &setting)
{
    if (const auto number = numberIn(value))
        setting = *number != 0;
}

void convert(const QJsonValue &value, double &setting)
{
    setting = numberIn(value).value_or(setting);
}

void convert(const QJsonValue &value, int &setting)
{
    using Limits = std::numeric_limits<int>;
    const auto number = numberIn(value);
    if (number && std::trunc(*number) >= Limits::min() && std::trunc(*number) <= Limits::max())
        setting = static_cast<int>(*number);
}

void convert(const QJsonValue &value, std::optional<QString> &setting)
{
    if (value.isString())
        setting = value.toString();
}

void convert(const QJsonValue &value, AnimationIntensity &setting)
{
    setting = animationIntensityFromRawValue(value.toString()).value_or(setting);
}

void convert(const QJsonValue &value, AppearancePreference &setting)
{
    setting = appearancePreferenceFromRawValue(value.toString()).value_or(setting);
}

void convert(const QJsonValue &value, NotchTheme &setting)
{
    const QString name = value.toString();
    // An old version's name.
    if (name == u"mono")
        setting = NotchTheme::Frost;
    else
        setting = notchThemeFromRawValue(name).value_or(setting);
}

void convert(const QJsonValue &value, QStringList &setting)
{
    if (!value.isArray())
        return;
    QStringList list;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isString())
            return;
        list.append(element.toString());
    }
    setting = list;
}

std::optional<QList<KestroModule>> modulesIn(const QJsonValue &value)
{
    if (!value.isArray())
        return std::nullopt;
    QList<KestroModule> modules;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &element : array) {
        if (!element.isString())
            return std::nullopt;
        if (const auto module = moduleFromRawValue(element.toString()))
            modules.append(*module);
    }
    return modules;
}

void convert(const QJsonValue &value, QList<KestroModule> &order)
{
    order = modulesIn(value).value_or(QList<KestroModule>());
    for (const KestroModule module : kAllModules) {
        if (!order.contains(module))
            order.append(module);
    }
}

void convert(const QJsonValue &value, QSet<KestroModule> &enabled)
{
    if (const auto modules = modulesIn(value))
        enabled = QSet<KestroModule>(modules->begin(), modules->end());
}

void convert(const QJsonValue &value, QMap<QString, QSizeF> &sizes)
{
    const QJsonObject object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (const auto size = notchSizeFromText(entry.value().toString()))
            sizes.insert(entry.key(), *size);
    }
}

template <typename T>
void load(const DefaultsDatabase &database, QStringView key, T &setting)
{
    if (const auto value = stored(database, key))
        convert(*value, setting);
}

} // namespace

SettingValues loadSettings(const DefaultsDatabase &database)
{
    SettingValues values;
    load(database, kShowAutomatically, values.showAutomatically);
    load(database, kAnimationIntensity, values.animationIntensity);
    load(database, kAppearance, values.appearance);
    load(database, stored(database, kNotchTheme) ? kNotchTheme : kSeamAccent, values.notchTheme);
    load(database, kHapticFeedback, values.hapticFeedback);
    load(database, kHoverOpenDelay, values.hoverOpenDelay);
    load(database, kCatchDraggedFiles, values.catchDraggedFiles);
    load(database, kAutoCheckUpdates, values.autoCheckUpdates);
    load(database, kSkippedUpdateVersion, values.skippedUpdateVersion);
    load(database, kModuleOrder, values.moduleOrder);
    load(database, kEnabledModules, values.enabledModules);
    load(database, kClipboardEnabled, values.clipboardEnabled);
    load(database, kClipboardLimit, values.clipboardLimit);
    load(database, kIgnoreConcealed, values.ignoreConcealed);
    load(database, kClearOnQuit, values.clearOnQuit);
    load(database, kExcludedApps, values.excludedApps);
    load(database, kHasCompletedOnboarding, values.hasCompletedOnboarding);
    load(database, kDisplayNotch, values.displayNotch);
    return values;
}

QList<KestroModule> activeModules(const SettingValues &values)
{
    QList<KestroModule> active;
    for (const KestroModule module : values.moduleOrder) {
        if (values.enabledModules.contains(module))
            active.append(module);
    }
    return active;
}

} // namespace ostrelle
